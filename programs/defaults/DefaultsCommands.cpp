#include "programs/defaults/DefaultsCommands.h"

#include <optional>
#include <string>
#include <utility>

#include "programs/defaults/Domain.h"
#include "programs/defaults/WholeFile.h"
#include "programs/defaults/format/Escaped.h"
#include "programs/defaults/format/FormatError.h"
#include "programs/defaults/format/JSONForm.h"
#include "programs/defaults/format/XMLForm.h"

namespace orvalo {

namespace {

using Command = DefaultsOptions::Command;

constexpr auto kStandard = "-";

void printLines(const std::string& lines) {
    writeWholeFile(kStandard, lines);
}

[[noreturn]] void failForWantOf(const std::string& what, const Domain& domain) {
    throw FormatError("there is no " + what + " '" + escaped(domain.name()) + "'.");
}

/// The entries of a domain that is to be there.
PropertyList::Dictionary entriesOf(const Domain& domain) {
    if (!domain.isThere()) {
        failForWantOf("domain", domain);
    }
    return domain.entries();
}

const PropertyList& entry(const PropertyList::Dictionary& entries, const std::string& key,
                          const Domain& domain) {
    const auto found = entries.find(key);
    if (found == entries.end()) {
        failForWantOf("key " + inQuotes(key) + " in", domain);
    }
    return found->second;
}

void listDomains() {
    std::string lines;
    for (const auto& name : Domain::names()) {
        lines += escaped(name) + "\n";
    }
    printLines(lines);
}

void listKeys(const Domain& domain) {
    std::string lines;
    for (const auto& [key, value] : entriesOf(domain)) {
        lines += escaped(key) + "\n";
    }
    printLines(lines);
}

void read(const DefaultsOptions& options, const Domain& domain) {
    const auto entries = entriesOf(domain);
    if (!options.key) {
        printLines(jsonText(entries) + "\n");
        return;
    }
    const auto& value = entry(entries, *options.key, domain);
    if (!options.isRaw) {
        printLines(jsonText(value) + "\n");
        return;
    }
    const auto* text = value.as<std::string>();
    if (text == nullptr) {
        throw FormatError("the value of " + inQuotes(*options.key) +
                          " is no text; --raw shows no other.");
    }
    printLines(*text + "\n");
}

void remove(const DefaultsOptions& options, const Domain& domain) {
    const auto entries = entriesOf(domain);
    if (!options.key) {
        domain.change({.isWhole = true, .entries = {}});
        return;
    }
    entry(entries, *options.key, domain);
    domain.change({.isWhole = false, .entries = {{*options.key, std::nullopt}}});
}

void exportTo(const DefaultsOptions& options, const Domain& domain) {
    const auto entries = entriesOf(domain);
    writeWholeFile(options.file, options.isXML ? xmlText(entries) : jsonText(entries) + "\n");
}

bool looksLikeXML(const std::string& text) {
    constexpr auto kInFront = " \t\r\n\xEF\xBB\xBF";
    const auto first = text.find_first_not_of(kInFront);
    return first != std::string::npos && text[first] == '<';
}

void importFrom(const DefaultsOptions& options, const Domain& domain) {
    const auto text = readWholeFile(options.file);
    DefaultsChanges changes{.isWhole = options.replaces, .entries = {}};
    try {
        for (auto& [key, value] : looksLikeXML(text) ? xmlDomain(text) : jsonDomain(text)) {
            changes.entries.push_back({key, value});
        }
    } catch (const FormatError& error) {
        const auto name = options.file == kStandard ? "standard input" : escaped(options.file);
        throw FormatError(name + ": " + error.what());
    }
    domain.change(std::move(changes));
}

void runInDomain(const DefaultsOptions& options) {
    const Domain domain(options.domain);
    switch (options.command) {
        case Command::list:
            listKeys(domain);
            break;
        case Command::read:
            read(options, domain);
            break;
        case Command::write:
            domain.change({.isWhole = false, .entries = {{*options.key, options.value}}});
            break;
        case Command::delete_:
            remove(options, domain);
            break;
        case Command::export_:
            exportTo(options, domain);
            break;
        default:
            importFrom(options, domain);
            break;
    }
}

}  // namespace

void runDefaultsCommand(const DefaultsOptions& options) {
    switch (options.command) {
        case Command::help:
            printLines(options.helpText);
            break;
        case Command::version:
            printLines("orvalo-defaults " ORVALO_VERSION "\n");
            break;
        case Command::domains:
            listDomains();
            break;
        default:
            runInDomain(options);
            break;
    }
}

}  // namespace orvalo
