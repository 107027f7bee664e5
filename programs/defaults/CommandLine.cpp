#include "programs/defaults/CommandLine.h"

#include <glib.h>

#include <memory>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

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

gboolean addOption(const char* name, const char* value, void* line, GError** /*error*/) {
    static_cast<CommandLine*>(line)->options[name + 2] = value == nullptr ? "" : value;
    return TRUE;
}

gboolean addWord(const char* /*name*/, const char* word, void* line, GError** /*error*/) {
    static_cast<CommandLine*>(line)->words.emplace_back(word);
    return TRUE;
}

GOptionEntry flag(const char* name, const char* description) {
    return {name,
            '\0',
            G_OPTION_FLAG_NO_ARG,
            G_OPTION_ARG_CALLBACK,
            reinterpret_cast<void*>(addOption),
            description,
            nullptr};
}

// GLib would convert other texts than file names from the locale's character set.
GOptionEntry value(const char* type, const char* description, const char* placeholder) {
    return {type,
            '\0',
            G_OPTION_FLAG_FILENAME,
            G_OPTION_ARG_CALLBACK,
            reinterpret_cast<void*>(addOption),
            description,
            placeholder};
}

}  // namespace

CommandLine CommandLine::parse(int argc, char** argv) {
    const std::vector<GOptionEntry> entries{
        flag("raw", "read: show a text as it is, not as JSON"),
        value("string", "write: a text", "TEXT"),
        value("int", "write: a whole number of 64 bits", "N"),
        value("float", "write: a number of double precision, inf, -inf or nan", "N"),
        value("bool", "write: a truth value", "true|false"),
        value("date", "write: a date such as 2026-11-21T08:30:00Z", "DATE"),
        value("data", "write: data", "BASE64"),
        value("json", "write: any value, lists and dictionaries too", "JSON"),
        flag("all", "delete: remove all keys"),
        flag("replace", "import: remove the keys that the file does not hold"),
        flag("version", "Show the version"),
        {G_OPTION_REMAINING, '\0', G_OPTION_FLAG_FILENAME, G_OPTION_ARG_CALLBACK,
         reinterpret_cast<void*>(addWord), nullptr, "COMMAND ..."},
        {}};
    CommandLine line;
    const std::unique_ptr<GOptionContext, Release<g_option_context_free>> context(
        g_option_context_new(nullptr));
    g_option_context_set_summary(context.get(), kSummary);
    g_option_context_set_description(context.get(), kExamples);
    auto* group = g_option_group_new("", "", "", &line, nullptr);
    g_option_group_add_entries(group, entries.data());
    g_option_context_set_main_group(context.get(), group);
    GError* failure = nullptr;
    if (g_option_context_parse(context.get(), &argc, &argv, &failure) == FALSE) {
        throw BadOption(std::string(GErrorPointer(failure)->message) + ".");
    }
    return line;
}

}  // namespace orvalo
