// orvalo-defaults: the settings in a terminal.

#include <glib.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/StandardErrorLog.h"
#include "platform/foundation/defaults/DefaultsDomain.h"
#include "platform/foundation/defaults/DefaultsPlaces.h"
#include "programs/defaults/CommandLine.h"
#include "programs/defaults/format/JSONForm.h"

namespace orvalo {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(GError* error) {
    throw std::runtime_error(std::string(GErrorPointer(error)->message) + ".");
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
        fail(failure);
    }
}

const std::string& utf8(const std::string& text) {
    if (g_utf8_validate(text.c_str(), -1, nullptr) == FALSE) {
        throw BadOption(inQuotes(text) + " is not UTF-8.");
    }
    return text;
}

/// Whether the file exists. A file that cannot be examined counts as existing: opening it then
/// gives the reason.
bool isThere(const fs::path& path) {
    std::error_code ignored;
    return fs::status(path, ignored).type() != fs::file_type::not_found;
}

std::string pathOf(const std::string& domain) {
    if (utf8(domain) == ownDomainName()) {
        return ownDomainFile().string();
    }
    if (const auto trouble = suiteNameTrouble(domain)) {
        throw BadOption(*trouble);
    }
    return suiteFile(domain).string();
}

/// Runs the operation on the domain's file; SQLite's errors do not name it.
template <typename Operation>
auto inFile(const std::string& path, const Operation& operation) {
    try {
        DefaultsDomain domain(path);
        return operation(domain);
    } catch (const SQLiteError& error) {
        throw NSError(error.domain(), error.code(), path + ": " + error.what());
    }
}

PropertyList::Dictionary entriesOf(const std::string& domain) {
    const auto path = pathOf(domain);
    if (!isThere(path)) {
        throw std::runtime_error("there is no domain '" + domain + "'.");
    }
    return inFile(path, [](DefaultsDomain& file) { return file.entries(); });
}

PropertyList valueOf(const std::string& domain, const std::string& key) {
    const auto entries = entriesOf(domain);
    const auto found = entries.find(utf8(key));
    if (found == entries.end()) {
        throw std::runtime_error("there is no key " + inQuotes(key) + " in '" + domain + "'.");
    }
    return found->second;
}

void change(const std::string& domain, const DefaultsDomain::Changes& changes, bool replacesAll) {
    inFile(pathOf(domain), [&](DefaultsDomain& file) { file.change(changes, replacesAll); });
}

void domains(const CommandLine& /*line*/) {
    auto names = suiteNames();
    if (isThere(ownDomainFile())) {
        names.push_back(ownDomainName());
    }
    std::ranges::sort(names);
    std::string lines;
    for (const auto& name : names) {
        lines += escaped(name) + "\n";
    }
    show(lines);
}

void list(const CommandLine& line) {
    std::string lines;
    for (const auto& [key, value] : entriesOf(line.words[1])) {
        lines += escaped(key) + "\n";
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

/// The number in a text that contains nothing else.
template <typename Number>
std::optional<PropertyList> number(const std::string& text) {
    Number value{};
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    const bool isWhole = result.ec == std::errc() && result.ptr == end;
    return isWhole ? std::optional<PropertyList>(value) : std::nullopt;
}

/// The value of an option of write; absent when the text is none.
std::optional<PropertyList> optionValue(const std::string& type, const std::string& text) {
    if (type == "int") {
        return number<std::int64_t>(text);
    }
    if (type == "float") {
        return number<double>(text);
    }
    if (type == "bool") {
        const bool isTrue = text == "true" || text == "yes";
        const bool isValue = isTrue || text == "false" || text == "no";
        return isValue ? std::optional<PropertyList>(isTrue) : std::nullopt;
    }
    return type == "string" ? text : formValue("$" + type, text);
}

PropertyList typedValue(const std::string& type, const std::string& text) {
    static const std::map<std::string, std::string, std::less<>> kinds{
        {"int", "a whole number of 64 bits"},
        {"float", "a number"},
        {"bool", "true or false"},
        {"date", "a date such as 2026-11-21T08:30:00Z"},
        {"data", "Base64"}};
    if (type == "json") {
        try {
            return jsonValue(text);
        } catch (const std::runtime_error& error) {
            throw BadOption("--json: " + std::string(error.what()));
        }
    }
    const auto value = optionValue(type, text);
    if (!value) {
        throw BadOption("--" + type + " wants " + kinds.at(type) + ", not " + inQuotes(text) + ".");
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
    change(line.words[1], {{utf8(line.words[2]), typedValue(type, utf8(text))}}, false);
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
    char* contents = nullptr;
    gsize size = 0;
    GError* failure = nullptr;
    if (g_file_get_contents(file.value_or("/dev/stdin").c_str(), &contents, &size, &failure) ==
        FALSE) {
        fail(failure);
    }
    const GText owned(contents);
    DefaultsDomain::Changes changes;
    try {
        const auto entries = jsonDomain({contents, size});
        changes.insert(entries.begin(), entries.end());
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(file.value_or("standard input") + ": " + error.what());
    }
    change(line.words[1], changes, line.has("replace"));
}

struct Command {
    const char* name;
    const char* arguments;
    std::size_t fewest;  ///< Arguments.
    std::size_t most;
    std::vector<std::string_view> options;
    void (*run)(const CommandLine&);
};

/// Changes nothing when it throws: BadOption for an invalid command line, another std::exception
/// for a failure. The text names the culprit.
void run(const CommandLine& line) {
    static const std::vector<Command> commands{
        {"domains", "no arguments", 0, 0, {}, domains},
        {"list", "DOMAIN", 1, 1, {}, list},
        {"read", "DOMAIN [KEY]", 1, 2, {"raw"}, read},
        {"write",
         "DOMAIN KEY",
         2,
         2,
         {"string", "int", "float", "bool", "date", "data", "json"},
         write},
        {"delete", "DOMAIN KEY", 1, 2, {"all"}, remove},
        {"export", "DOMAIN [FILE]", 1, 2, {}, exportTo},
        {"import", "DOMAIN [FILE]", 1, 2, {"replace"}, importFrom}};
    if (line.has("version")) {
        show("orvalo-defaults " ORVALO_VERSION "\n");
        return;
    }
    if (line.words.empty()) {
        throw BadOption("a command is missing; see orvalo-defaults --help.");
    }
    const auto& name = line.words[0];
    const auto command = std::ranges::find(commands, name, &Command::name);
    if (command == commands.end()) {
        throw BadOption(inQuotes(name) + " is no command; see orvalo-defaults --help.");
    }
    for (const auto& [option, value] : line.options) {
        if (std::ranges::find(command->options, option) == command->options.end()) {
            throw BadOption(
                std::string(name).append(" has no option --").append(option).append("."));
        }
    }
    const auto arguments = line.words.size() - 1;
    if (arguments < command->fewest || arguments > command->most) {
        throw BadOption(name + " wants " + command->arguments + ".");
    }
    command->run(line);
}

/// Prints an error, which may quote any bytes, and returns the exit status.
int complain(const std::exception& error, int status) {
    std::fprintf(stderr, "orvalo-defaults: %s\n", escaped(error.what()).c_str());
    return status;
}

}  // namespace

}  // namespace orvalo

int main(int argc, char** argv) {
    using namespace orvalo;
    std::setlocale(LC_ALL, "");  // NOLINT(concurrency-mt-unsafe): there is one thread.
    logToStandardError();
    try {
        run(CommandLine::parse(argc, argv));
        return EXIT_SUCCESS;
    } catch (const BadOption& error) {
        constexpr int badOption = 2;
        return complain(error, badOption);
    } catch (const std::exception& error) {
        return complain(error, EXIT_FAILURE);
    }
}
