#include "programs/defaults/DefaultsCommands.h"

#include <glib.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <system_error>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/DefaultsDomain.h"
#include "platform/foundation/defaults/DefaultsPlaces.h"
#include "programs/defaults/WholeFile.h"
#include "programs/defaults/format/Escaped.h"
#include "programs/defaults/format/JSONForm.h"

namespace orvalo {

namespace {

namespace fs = std::filesystem;

constexpr auto kStandard = "-";

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
        throw BadOption(escaped(*trouble));
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
        throw std::runtime_error("there is no domain '" + escaped(domain) + "'.");
    }
    return inFile(path, [](DefaultsDomain& file) { return file.entries(); });
}

PropertyList valueOf(const std::string& domain, const std::string& key) {
    const auto entries = entriesOf(domain);
    const auto found = entries.find(key);
    if (found == entries.end()) {
        throw std::runtime_error("there is no key " + inQuotes(key) + " in '" + escaped(domain) +
                                 "'.");
    }
    return found->second;
}

void change(const std::string& domain, const DefaultsDomain::Changes& changes, bool replacesAll) {
    inFile(pathOf(domain), [&](DefaultsDomain& file) { file.change(changes, replacesAll); });
}

void showDomains() {
    const auto folder = suiteFile("any").parent_path();
    std::error_code error;
    if (fs::directory_iterator(folder, error); error && isThere(folder)) {
        throw NSError::posix(error.value(), folder.string());
    }
    auto names = suiteNames();
    if (isThere(ownDomainFile())) {
        names.push_back(ownDomainName());
    }
    std::ranges::sort(names);
    std::string lines;
    for (const auto& name : names) {
        lines += escaped(name) + "\n";
    }
    writeWholeFile(kStandard, lines);
}

void list(const CommandLine& line) {
    std::string lines;
    for (const auto& [key, value] : entriesOf(line.arguments[0])) {
        lines += escaped(key) + "\n";
    }
    writeWholeFile(kStandard, lines);
}

void read(const CommandLine& line) {
    const auto& domain = line.arguments[0];
    if (line.arguments.size() == 1) {
        if (line.has("raw")) {
            throw BadOption("--raw wants a key.");
        }
        writeWholeFile(kStandard, jsonText(entriesOf(domain)) + "\n");
        return;
    }
    const auto value = valueOf(domain, utf8(line.arguments[1]));
    const auto* text = value.as<std::string>();
    if (line.has("raw") && text == nullptr) {
        throw std::runtime_error("the value of " + inQuotes(line.arguments[1]) +
                                 " is no text; --raw shows no other.");
    }
    writeWholeFile(kStandard, (line.has("raw") ? *text : jsonText(value)) + "\n");
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

std::optional<PropertyList> truthValue(const std::string& text) {
    if (text == "true" || text == "yes") {
        return true;
    }
    return text == "false" || text == "no" ? std::optional<PropertyList>(false) : std::nullopt;
}

PropertyList typedValue(const std::string& type, const std::string& text) {
    const auto checked = [&](const std::optional<PropertyList>& value, const std::string& kind) {
        if (!value) {
            throw BadOption("--" + type + " wants " + kind + ", not " + inQuotes(text) + ".");
        }
        return *value;
    };
    if (type == "int") {
        return checked(number<std::int64_t>(text), "a whole number of 64 bits");
    }
    if (type == "float") {
        return checked(number<double>(text), "a number");
    }
    if (type == "bool") {
        return checked(truthValue(text), "true or false");
    }
    if (type == "date") {
        return checked(formValue("$date", text), "a date such as 2026-11-21T08:30:00Z");
    }
    if (type == "data") {
        return checked(formValue("$data", text), "Base64");
    }
    if (type != "json") {
        return text;
    }
    try {
        return jsonValue(text);
    } catch (const std::runtime_error& error) {
        throw BadOption("--json: " + std::string(error.what()));
    }
}

void write(const CommandLine& line) {
    if (line.options.size() != 1) {
        throw BadOption(
            "write wants exactly one of --string, --int, --float, --bool, --date, --data and "
            "--json.");
    }
    const auto& [type, text] = *line.options.begin();
    change(line.arguments[0], {{utf8(line.arguments[1]), typedValue(type, utf8(text))}}, false);
}

void remove(const CommandLine& line) {
    const auto& domain = line.arguments[0];
    if ((line.arguments.size() == 2) == line.has("all")) {
        throw BadOption("delete wants either a key or --all.");
    }
    if (line.has("all")) {
        static_cast<void>(entriesOf(domain));
        change(domain, {}, true);
        return;
    }
    static_cast<void>(valueOf(domain, utf8(line.arguments[1])));
    change(domain, {{line.arguments[1], std::nullopt}}, false);
}

std::string fileOf(const CommandLine& line) {
    const auto file = line.second(kStandard);
    if (file.empty()) {
        throw BadOption(line.command + " wants a file name, not an empty one.");
    }
    return file;
}

void exportTo(const CommandLine& line) {
    const auto file = fileOf(line);
    writeWholeFile(file, jsonText(entriesOf(line.arguments[0])) + "\n");
}

void importFrom(const CommandLine& line) {
    const auto file = fileOf(line);
    const auto text = readWholeFile(file);
    DefaultsDomain::Changes changes;
    try {
        const auto entries = jsonDomain(text);
        changes.insert(entries.begin(), entries.end());
    } catch (const std::runtime_error& error) {
        throw std::runtime_error((file == kStandard ? "standard input" : escaped(file)) + ": " +
                                 error.what());
    }
    change(line.arguments[0], changes, line.has("replace"));
}

}  // namespace

void runDefaultsCommand(const CommandLine& line) {
    using Function = void (*)(const CommandLine&);
    static const std::map<std::string, Function, std::less<>> functions{
        {"",
         [](const CommandLine&) {
             writeWholeFile(kStandard, "orvalo-defaults " ORVALO_VERSION "\n");
         }},
        {"domains", [](const CommandLine&) { showDomains(); }},
        {"list", list},
        {"read", read},
        {"write", write},
        {"delete", remove},
        {"export", exportTo},
        {"import", importFrom}};
    functions.at(line.command)(line);
}

}  // namespace orvalo
