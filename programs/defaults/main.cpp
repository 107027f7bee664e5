// orvalo-defaults: the settings in a terminal.

#include <glib.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <optional>

#include "platform/foundation/FileContents.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/OneLine.h"
#include "platform/foundation/StandardErrorLog.h"
#include "platform/foundation/defaults/DefaultsDomain.h"
#include "platform/foundation/defaults/DefaultsPlaces.h"
#include "programs/defaults/format/JSONForm.h"

namespace orvalo {

namespace {

namespace fs = std::filesystem;

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
effect, or com.tessaly.Orvalo, the application's own. orvalo-defaults(1) has examples, and tells how
JSON holds dates, data and infinite numbers.)";

/// An invalid command line. The text names the culprit.
struct BadOption : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct CommandLine {
    std::vector<std::string> words;                           ///< The command and its arguments.
    std::map<std::string, std::string, std::less<>> options;  ///< "" for those without a value.

    bool has(std::string_view option) const { return options.contains(option); }
};

gboolean addArgument(const char* name, const char* value, void* line, GError** /*error*/) {
    auto& [words, options] = *static_cast<CommandLine*>(line);
    if (*name == '\0') {
        words.emplace_back(value);
    } else {
        options[name + 2] = value == nullptr ? "" : value;
    }
    return TRUE;
}

/// placeholder: null for an option without a value.
GOptionEntry option(const char* name, const char* description, const char* placeholder = nullptr) {
    // GLib would convert other texts than file names from the locale's character set.
    const int kind = placeholder == nullptr ? G_OPTION_FLAG_NO_ARG : G_OPTION_FLAG_FILENAME;
    return {
        name,        '\0',       kind, G_OPTION_ARG_CALLBACK, reinterpret_cast<void*>(addArgument),
        description, placeholder};
}

const std::array kOptions{
    option("raw", "read: show a text as it is, not as JSON"),
    option("string", "write: a text", "TEXT"),
    option("int", "write: a whole number of 64 bits", "N"),
    option("float", "write: a number of double precision, inf, -inf or nan", "N"),
    option("bool", "write: true or false", "true|false"),
    option("date", "write: a date such as 2026-11-21T08:30:00Z", "DATE"),
    option("data", "write: data in Base64", "BASE64"),
    option("json", "write: any value, lists and dictionaries too", "JSON"),
    option("all", "delete: remove all keys"),
    option("replace", "import: remove the keys that the file does not hold"),
    option("version", "Show the version"),
    option(G_OPTION_REMAINING, nullptr, "COMMAND ..."),
    GOptionEntry{}};

/// It begins with the name of the command that has the option.
std::string descriptionOf(std::string_view option) {
    return std::ranges::find(kOptions, option, &GOptionEntry::long_name)->description;
}

/// --help prints the help and ends the program.
CommandLine parse(int argc, char** argv) {
    CommandLine line;
    const std::unique_ptr<GOptionContext, Release<g_option_context_free>> context(
        g_option_context_new(nullptr));
    g_option_context_set_summary(context.get(), kSummary);
    auto* group = g_option_group_new("", "", "", &line, nullptr);
    g_option_group_add_entries(group, kOptions.data());
    g_option_context_set_main_group(context.get(), group);
    GError* failure = nullptr;
    if (g_option_context_parse(context.get(), &argc, &argv, &failure) == FALSE) {
        throw BadOption(std::string(GErrorPointer(failure)->message) + ".");
    }
    return line;
}

/// Writes to standard output.
void show(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() ||
        std::fflush(stdout) != 0) {
        throw std::runtime_error(std::string("standard output: ") + g_strerror(errno) + ".");
    }
}

/// Replaces or creates a file (mode 0600), or leaves its content as it is when it throws.
void writeFile(const fs::path& path, const std::string& text) {
    std::error_code error;
    if (fs::exists(path, error) && !fs::is_regular_file(path)) {
        throw std::runtime_error(path.string() + ": This is no regular file.");
    }
    constexpr int ownerOnly = 0600;
    GError* failure = nullptr;
    const auto file = fs::weakly_canonical(path, error);  // GLib would replace a link.
    // GLib 2.84 keeps the mode of a file that is there.
    fs::permissions(file, static_cast<fs::perms>(ownerOnly), error);
    if (g_file_set_contents_full(file.c_str(), text.data(), static_cast<gssize>(text.size()),
                                 G_FILE_SET_CONTENTS_CONSISTENT, ownerOnly, &failure) == FALSE) {
        throw std::runtime_error(std::string(GErrorPointer(failure)->message) + ".");
    }
}

/// Whether the file exists. A file that cannot be examined counts as existing: opening it then
/// gives the reason.
bool isThere(const fs::path& path) {
    std::error_code ignored;
    return fs::status(path, ignored).type() != fs::file_type::not_found;
}

std::string pathOf(const std::string& domain) {
    if (domain == ownDomainName()) {
        return ownDomainFile().string();
    }
    if (const auto trouble = suiteNameTrouble(domain)) {
        throw BadOption(*trouble);
    }
    return suiteFile(domain).string();
}

PropertyList::Dictionary entriesOf(const std::string& domain) {
    const auto path = pathOf(domain);
    if (!isThere(path)) {
        throw std::runtime_error("there is no domain '" + domain + "'.");
    }
    return DefaultsDomain(path).entries();
}

PropertyList valueOf(const std::string& domain, const std::string& key) {
    const auto entries = entriesOf(domain);
    const auto found = entries.find(key);
    if (found == entries.end()) {
        throw std::runtime_error("there is no key " + inQuotes(key) + " in '" + domain + "'.");
    }
    return found->second;
}

void change(const std::string& domain, const DefaultsDomain::Changes& changes, bool replacesAll) {
    DefaultsDomain(pathOf(domain)).change(changes, replacesAll);
}

/// The name on one line, escaped as in JSON.
std::string listed(const std::string& name) {
    const auto text = jsonText(name);
    return text.substr(1, text.size() - 2) + "\n";
}

void domains(const CommandLine& /*line*/) {
    auto names = suiteNames();
    if (isThere(ownDomainFile())) {
        names.push_back(ownDomainName());
    }
    std::ranges::sort(names);
    std::string lines;
    for (const auto& name : names) {
        lines += listed(name);
    }
    show(lines);
}

void list(const CommandLine& line) {
    std::string lines;
    for (const auto& [key, value] : entriesOf(line.words[1])) {
        lines += listed(key);
    }
    show(lines);
}

void read(const CommandLine& line) {
    const bool isRaw = line.has("raw");
    if (line.words.size() == 2) {
        if (isRaw) {
            throw BadOption("--raw wants a key.");
        }
        show(jsonText(entriesOf(line.words[1])) + "\n");
        return;
    }
    const auto value = valueOf(line.words[1], line.words[2]);
    const auto* text = value.as<std::string>();
    if (isRaw && text == nullptr) {
        throw std::runtime_error("the value of " + inQuotes(line.words[2]) +
                                 " is no text; --raw shows no other.");
    }
    show((isRaw ? *text : jsonText(value)) + "\n");
}

/// The value of an option of write; absent when the text is none.
std::optional<PropertyList> optionValue(const std::string& type, const std::string& text) {
    if (type == "int") {
        std::int64_t value = 0;
        const auto* end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(text.data(), end, value);
        const bool isWhole = error == std::errc() && stop == end;
        return isWhole ? std::optional<PropertyList>(value) : std::nullopt;
    }
    if (type == "bool") {
        const bool isTrue = text == "true" || text == "yes";
        const bool isValue = isTrue || text == "false" || text == "no";
        return isValue ? std::optional<PropertyList>(isTrue) : std::nullopt;
    }
    return type == "string" ? text : formValue(type == "float" ? "$real" : "$" + type, text);
}

PropertyList typedValue(const std::string& type, const std::string& text) {
    if (type == "json") {
        try {
            return jsonValue(text);
        } catch (const std::runtime_error& error) {
            throw BadOption("--json: " + std::string(error.what()));
        }
    }
    const auto value = optionValue(type, text);
    if (!value) {
        throw BadOption("--" + type + " wants " +
                        descriptionOf(type).substr(std::strlen("write: ")) + ", not " +
                        inQuotes(text) + ".");
    }
    return *value;
}

void write(const CommandLine& line) {
    if (line.options.size() != 1) {
        throw BadOption(
            "write wants exactly one of --string, --int, --float, --bool, --date, --data and "
            "--json.");
    }
    const auto& [type, text] = *line.options.begin();
    change(line.words[1], {{line.words[2], typedValue(type, text)}}, false);
}

void remove(const CommandLine& line) {
    const bool isAll = line.has("all");
    if ((line.words.size() == 3) == isAll) {
        throw BadOption("delete wants either a key or --all.");
    }
    if (isAll) {
        static_cast<void>(entriesOf(line.words[1]));
        change(line.words[1], {}, true);
    } else {
        static_cast<void>(valueOf(line.words[1], line.words[2]));
        change(line.words[1], {{line.words[2], std::nullopt}}, false);
    }
}

/// The file that export or import names; absent for standard output or input.
std::optional<std::string> fileOf(const CommandLine& line) {
    auto file = line.words.size() > 2 ? line.words[2] : "-";
    if (file.empty()) {
        throw BadOption(line.words[0] + " wants a file name, not an empty one.");
    }
    return file == "-" ? std::nullopt : std::optional(file);
}

void exportTo(const CommandLine& line) {
    const auto file = fileOf(line);
    const auto text = jsonText(entriesOf(line.words[1])) + "\n";
    file ? writeFile(*file, text) : show(text);
}

void importFrom(const CommandLine& line) {
    const auto file = fileOf(line);
    const auto contents = contentsOfFile(file.value_or("/dev/stdin"));
    PropertyList::Dictionary entries;
    try {
        entries = jsonDomain(std::string(contents.begin(), contents.end()));
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(file.value_or("standard input") + ": " + error.what());
    }
    change(line.words[1], {entries.begin(), entries.end()}, line.has("replace"));
}

struct Command {
    const char* name;
    const char* arguments;
    std::size_t fewest;  ///< Arguments.
    std::size_t most;
    void (*run)(const CommandLine&);
};

constexpr std::array<Command, 7> kCommands{{{"domains", "no arguments", 0, 0, domains},
                                            {"list", "DOMAIN", 1, 1, list},
                                            {"read", "DOMAIN [KEY]", 1, 2, read},
                                            {"write", "DOMAIN KEY", 2, 2, write},
                                            {"delete", "DOMAIN KEY", 1, 2, remove},
                                            {"export", "DOMAIN [FILE]", 1, 2, exportTo},
                                            {"import", "DOMAIN [FILE]", 1, 2, importFrom}}};

/// Changes nothing when it throws: BadOption for an invalid command line, another std::exception
/// for a failure. The text names the culprit.
void run(const CommandLine& line) {
    if (line.has("version")) {
        show("orvalo-defaults " ORVALO_VERSION "\n");
        return;
    }
    if (line.words.empty()) {
        throw BadOption("a command is missing; see orvalo-defaults --help.");
    }
    const auto& name = line.words[0];
    const auto* command = std::ranges::find(kCommands, name, &Command::name);
    if (command == kCommands.end()) {
        throw BadOption(inQuotes(name) + " is no command; see orvalo-defaults --help.");
    }
    for (const auto& [option, value] : line.options) {
        if (!descriptionOf(option).starts_with(name + ": ")) {
            throw BadOption(
                std::string(name).append(" has no option --").append(option).append("."));
        }
    }
    const auto arguments = line.words.size() - 1;
    if (arguments < command->fewest || arguments > command->most) {
        throw BadOption(name + " wants " + command->arguments + ".");
    }
    try {
        command->run(line);
    } catch (const SQLiteError& error) {
        // SQLite's errors do not name the file.
        throw NSError(error.domain(), error.code(), pathOf(line.words[1]) + ": " + error.what());
    }
}

}  // namespace

}  // namespace orvalo

int main(int argc, char** argv) {
    using namespace orvalo;
    std::setlocale(LC_ALL, "");  // NOLINT(concurrency-mt-unsafe): there is one thread.
    logToStandardError();
    try {
        run(parse(argc, argv));
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvalo-defaults: %s\n", onOneLine(error.what()).c_str());
        constexpr int badOption = 2;
        return dynamic_cast<const BadOption*>(&error) == nullptr ? EXIT_FAILURE : badOption;
    }
}
