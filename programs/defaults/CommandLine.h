#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace orvalo {

/// An invalid command line. The text is one line that names the culprit.
class BadOption : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The command line of orvalo-defaults. "--" ends the options.
struct CommandLine {
    std::string command;                                      ///< Empty for --version.
    std::vector<std::string> arguments;                       ///< As many as the command takes.
    std::map<std::string, std::string, std::less<>> options;  ///< "" for those without a value.

    bool has(std::string_view option) const { return options.contains(option); }
    /// The second argument, or else the other text.
    std::string second(const std::string& otherwise) const {
        return arguments.size() > 1 ? arguments[1] : otherwise;
    }

    /// --help prints the help and ends the program. Throws BadOption.
    static CommandLine parse(int argc, char** argv);
};

}  // namespace orvalo
