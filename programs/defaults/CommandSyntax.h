#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "programs/defaults/DefaultsOptions.h"

namespace orvalo {

/// An option of a command.
struct OptionSyntax {
    const char* name;      ///< Without its hyphens.
    const char* argument;  ///< What its argument is called; null when it takes none.
    const char* description;
};

/// How one command is written.
struct CommandSyntax {
    const char* name;
    DefaultsOptions::Command command;
    const char* arguments;  ///< Such as "DOMAIN [KEY]".
    std::size_t fewest;     ///< How many arguments it takes at least,
    std::size_t most;       ///< and at most.
    const char* summary;
    std::vector<OptionSyntax> options;
};

/// The commands, in the order in which the help names them.
const std::vector<CommandSyntax>& commandSyntaxes();

/// The command of that name; null when there is none.
const CommandSyntax* commandSyntax(std::string_view name);

/// The help of the whole program.
std::string overview();

}  // namespace orvalo
