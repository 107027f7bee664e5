#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace orvalo {

/// An invalid command line. The text names the culprit.
class BadOption : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The command line of orvalo-defaults. "--" ends the options.
struct CommandLine {
    std::vector<std::string> words;                           ///< The command and its arguments.
    std::map<std::string, std::string, std::less<>> options;  ///< "" for those without a value.

    bool has(std::string_view option) const { return options.contains(option); }

    /// Throws BadOption for an option that no command has. --help prints the help and ends the
    /// program.
    static CommandLine parse(int argc, char** argv);
};

}  // namespace orvalo
