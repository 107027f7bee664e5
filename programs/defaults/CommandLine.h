#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "programs/defaults/CommandSyntax.h"

namespace orvalo {

/// What follows a command's name, sorted into options and arguments. "--" ends the options.
struct CommandLine {
    std::string command;
    std::map<std::string, std::string, std::less<>> options;  ///< "" for what takes no argument.
    std::vector<std::string> arguments;                       ///< As many as the syntax takes.
    bool wantsHelp = false;                                   ///< --help: all else may be missing.

    bool has(std::string_view option) const { return options.contains(option); }

    /// Throws BadOption.
    static CommandLine parse(const CommandSyntax& syntax, const std::vector<std::string>& words);
};

/// The help of one command.
std::string helpOf(const CommandSyntax& syntax);

}  // namespace orvalo
