#pragma once

#include <map>
#include <string>

namespace orvalo::bench {

/// A benchmark's command line: pairs of a name and a value, as in "--seconds 60".
class Options {
  public:
    /// defaults: every option there is, with its value when not given. --help, or a command line
    /// that is not made of these, prints them and ends the program.
    Options(int argc, char** argv, std::map<std::string, std::string> defaults);

    const std::string& text(const std::string& name) const { return values_.at(name); }
    /// The value as a whole number above 0; any other text ends the program with a line about it.
    int count(const std::string& name) const;
    /// Whether the value is "yes"; any text but that and "no" ends the program with a line about
    /// it.
    bool isYes(const std::string& name) const;

  private:
    std::map<std::string, std::string> values_;
};

}  // namespace orvalo::bench
