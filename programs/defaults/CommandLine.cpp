#include "programs/defaults/CommandLine.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <memory>

#include "platform/foundation/GLibPointer.h"
#include "programs/defaults/format/Escaped.h"

namespace orvalo {

namespace {

struct Command {
    const char* name;
    const char* arguments;
    std::size_t fewest;  ///< Arguments.
    std::size_t most;
    std::vector<std::string_view> options;
};

const std::vector<Command>& commands() {
    static const std::vector<Command> commands{
        {"domains", "", 0, 0, {}},
        {"list", "DOMAIN", 1, 1, {}},
        {"read", "DOMAIN [KEY]", 1, 2, {"raw"}},
        {"write", "DOMAIN KEY", 2, 2, {"string", "int", "float", "bool", "date", "data", "json"}},
        {"delete", "DOMAIN KEY", 1, 2, {"all"}},
        {"export", "DOMAIN [FILE]", 1, 2, {}},
        {"import", "DOMAIN [FILE]", 1, 2, {"replace"}}};
    return commands;
}

constexpr auto kSummary = R"(Reads and changes the settings that Orvalo and its effect keep.

Commands:
  domains                 Show the names of the domains, one a line
  list DOMAIN             Show the keys of a domain, one a line
  read DOMAIN [KEY]       Show the value of a key, or all of a domain, as JSON
  write DOMAIN KEY        Set the value of a key, with one of the options below
  delete DOMAIN KEY       Remove a key, or all keys with --all
  export DOMAIN [FILE]    Write a domain as JSON to a file or standard output
  import DOMAIN [FILE]    Set the keys in a JSON file or standard input

A DOMAIN is the name of a store: group.com.Tessaly.audio, which the application shares with its
effect, or com.tessaly.Orvalo, the application's own. orvalo-defaults(1) tells how JSON holds dates,
data and infinite numbers.)";

constexpr auto kExamples = R"(Examples:
  orvalo-defaults read group.com.Tessaly.audio
  orvalo-defaults write group.com.Tessaly.audio gain --float 0.5
  orvalo-defaults export group.com.Tessaly.audio settings.json)";

constexpr std::array kOptions{
    GOptionEntry{"raw", '\0', 0, G_OPTION_ARG_NONE, nullptr,
                 "read: show a text as it is, not as JSON", nullptr},
    GOptionEntry{"string", '\0', 0, G_OPTION_ARG_FILENAME, nullptr, "write: a text", "TEXT"},
    GOptionEntry{"int", '\0', 0, G_OPTION_ARG_FILENAME, nullptr, "write: a whole number of 64 bits",
                 "N"},
    GOptionEntry{"float", '\0', 0, G_OPTION_ARG_FILENAME, nullptr,
                 "write: a number of double precision, inf, -inf or nan", "N"},
    GOptionEntry{"bool", '\0', 0, G_OPTION_ARG_FILENAME, nullptr, "write: a truth value",
                 "true|false"},
    GOptionEntry{"date", '\0', 0, G_OPTION_ARG_FILENAME, nullptr,
                 "write: a date such as 2026-11-21T08:30:00Z", "DATE"},
    GOptionEntry{"data", '\0', 0, G_OPTION_ARG_FILENAME, nullptr, "write: data", "BASE64"},
    GOptionEntry{"json", '\0', 0, G_OPTION_ARG_FILENAME, nullptr,
                 "write: any value, lists and dictionaries too", "JSON"},
    GOptionEntry{"all", '\0', 0, G_OPTION_ARG_NONE, nullptr, "delete: remove all keys", nullptr},
    GOptionEntry{"replace", '\0', 0, G_OPTION_ARG_NONE, nullptr,
                 "import: remove the keys that the file does not hold", nullptr},
    GOptionEntry{"version", '\0', 0, G_OPTION_ARG_NONE, nullptr, "Show the version", nullptr}};

void check(const CommandLine& line) {
    const auto command = std::ranges::find(commands(), line.command, &Command::name);
    if (command == commands().end()) {
        throw BadOption(inQuotes(line.command) + " is no command; see orvalo-defaults --help.");
    }
    for (const auto& [option, value] : line.options) {
        if (std::ranges::find(command->options, option) == command->options.end()) {
            throw BadOption(line.command + " has no option --" + option + ".");
        }
    }
    if (line.arguments.size() < command->fewest) {
        throw BadOption(line.command + " wants " + command->arguments + ".");
    }
    if (line.arguments.size() > command->most) {
        throw BadOption(line.command + ": " + inQuotes(line.arguments[command->most]) +
                        " is one argument too many.");
    }
}

}  // namespace

CommandLine CommandLine::parse(int argc, char** argv) {
    std::array<char*, kOptions.size()> texts{};
    std::array<gboolean, kOptions.size()> flags{};
    char** words = nullptr;
    std::vector<GOptionEntry> entries(kOptions.begin(), kOptions.end());
    for (std::size_t index = 0; index < kOptions.size(); ++index) {
        entries[index].arg_data = entries[index].arg == G_OPTION_ARG_NONE
                                      ? static_cast<void*>(&flags.at(index))
                                      : static_cast<void*>(&texts.at(index));
    }
    entries.push_back(
        {G_OPTION_REMAINING, '\0', 0, G_OPTION_ARG_FILENAME_ARRAY, &words, nullptr, "COMMAND ..."});
    entries.push_back({});
    const std::unique_ptr<GOptionContext, Release<g_option_context_free>> context(
        g_option_context_new(nullptr));
    g_option_context_set_summary(context.get(), kSummary);
    g_option_context_set_description(context.get(), kExamples);
    g_option_context_add_main_entries(context.get(), entries.data(), nullptr);
    GError* failure = nullptr;
    if (g_option_context_parse(context.get(), &argc, &argv, &failure) == FALSE) {
        const GErrorPointer error(failure);
        throw BadOption(escaped(error->message) + ".");
    }
    const std::unique_ptr<char*, Release<g_strfreev>> owner(words);
    CommandLine line;
    for (std::size_t index = 0; index < kOptions.size(); ++index) {
        const GText text(texts.at(index));
        if (text || flags.at(index) != FALSE) {
            line.options.emplace(entries[index].long_name, text ? text.get() : "");
        }
    }
    if (line.options.erase("version") > 0) {
        return line;
    }
    if (words == nullptr) {
        throw BadOption("a command is missing; see orvalo-defaults --help.");
    }
    line.command = *words;
    for (char** word = words + 1; *word != nullptr; ++word) {
        line.arguments.emplace_back(*word);
    }
    check(line);
    return line;
}

}  // namespace orvalo
