#include "programs/defaults/CommandSyntax.h"

#include <algorithm>

namespace orvalo {

namespace {

using Command = DefaultsOptions::Command;

constexpr std::string_view kExamples = R"(
A DOMAIN is the name of a store, such as group.com.Tessaly.audio, which the application
shares with its effect, or com.tessaly.Orvalo, the application's own. Values are read
and written as JSON; orvalo-defaults(1) says how dates, data and special numbers look.

Examples:
  orvalo-defaults read group.com.Tessaly.audio
  orvalo-defaults write group.com.Tessaly.audio gain --float 0.5
  orvalo-defaults export group.com.Tessaly.audio settings.json

orvalo-defaults COMMAND --help shows the options of one command, and
orvalo-defaults --version the version.
)";

}  // namespace

const std::vector<CommandSyntax>& commandSyntaxes() {
    static const std::vector<CommandSyntax> syntaxes{
        {"domains", Command::domains, "", 0, 0, "Show the names of the domains, one a line", {}},
        {"list", Command::list, "DOMAIN", 1, 1, "Show the keys of a domain, one a line", {}},
        {"read",
         Command::read,
         "DOMAIN [KEY]",
         1,
         2,
         "Show the value of a key, or all of a domain",
         {{"raw", nullptr, "Show a text as it is, and not as JSON"}}},
        {"write",
         Command::write,
         "DOMAIN KEY",
         2,
         2,
         "Set the value of a key, by one of the options",
         {{"string", "TEXT", "To a text"},
          {"int", "N", "To a whole number of 64 bits"},
          {"float", "N", "To a number of double precision; inf and nan are numbers too"},
          {"bool", "true|false", "To a truth value; yes and no will do"},
          {"date", "DATE", "To a date, such as 2026-11-21T08:30:00Z or 2026-11-21T08:30:00.25Z"},
          {"data", "BASE64", "To data"},
          {"json", "JSON", "To any value, a list or a dictionary too"}}},
        {"delete",
         Command::delete_,
         "DOMAIN KEY",
         1,
         2,
         "Remove a key, or all with --all",
         {{"all", nullptr, "Remove every key of the domain"}}},
        {"export",
         Command::export_,
         "DOMAIN [FILE]",
         1,
         2,
         "Write a domain to a file, or to standard output",
         {{"format", "json|xml",
           "JSON, which is the default, or an XML property list, which is the default for a FILE "
           "that ends in .plist or .xml"}}},
        {"import",
         Command::import,
         "DOMAIN [FILE]",
         1,
         2,
         "Set the keys that a file or standard input holds, of either format",
         {{"replace", nullptr, "Remove the keys that it does not hold"}}}};
    return syntaxes;
}

const CommandSyntax* commandSyntax(std::string_view name) {
    const auto& syntaxes = commandSyntaxes();
    const auto found = std::ranges::find(syntaxes, name, &CommandSyntax::name);
    return found == syntaxes.end() ? nullptr : &*found;
}

std::string overview() {
    std::string text =
        "Usage:\n  orvalo-defaults COMMAND ...\n\n"
        "Reads and changes the settings that Orvalo and its effect keep.\n\nCommands:\n";
    for (const auto& syntax : commandSyntaxes()) {
        std::string usage = std::string(syntax.name) + " " + syntax.arguments;
        usage.resize(24, ' ');
        text.append("  ").append(usage).append(syntax.summary).append("\n");
    }
    return text.append(kExamples);
}

}  // namespace orvalo
