#pragma once

#include <map>
#include <string>

namespace orvalo::bench {

/// The command line of a benchmark: pairs of option and value, such as "--seconds 60".
class Options {
  public:
    /// defaults: all options with their default values. For --help or an invalid command line,
    /// prints them and ends the program.
    Options(int argc, char** argv, std::map<std::string, std::string> defaults);

    const std::string& text(const std::string& name) const { return values_.at(name); }
    /// The value as a whole number above 0. Ends the program with an error for any other text.
    int count(const std::string& name) const;

  private:
    std::map<std::string, std::string> values_;
};

}  // namespace orvalo::bench
