#include "programs/defaults/DefaultsOptions.h"

#include <glib.h>

#include <utility>

#include "programs/defaults/CommandLine.h"
#include "programs/defaults/CommandSyntax.h"
#include "programs/defaults/TypedValue.h"
#include "programs/defaults/format/Escaped.h"

namespace orvalo {

namespace {

using Command = DefaultsOptions::Command;

/// What a domain cannot have for a name, a key or a text.
const std::string& utf8(const std::string& text) {
    if (g_utf8_validate(text.c_str(), -1, nullptr) == FALSE) {
        throw BadOption(inQuotes(text) + " is not UTF-8.");
    }
    return text;
}

DefaultsOptions help(std::string text) {
    DefaultsOptions options;
    options.helpText = std::move(text);
    return options;
}

/// The one option that says what to write.
PropertyList value(const CommandLine& line) {
    if (line.options.size() != 1) {
        throw BadOption(
            "write wants exactly one of --string, --int, --float, --bool, --date, --data and "
            "--json.");
    }
    const auto& [type, text] = *line.options.begin();
    return typedValue(type, utf8(text));
}

bool isXML(const CommandLine& line, const std::string& file) {
    if (!line.has("format")) {
        return file.ends_with(".plist") || file.ends_with(".xml");
    }
    const auto& format = line.options.at("format");
    if (format != "xml" && format != "json") {
        throw BadOption("--format wants json or xml, not " + inQuotes(format) + ".");
    }
    return format == "xml";
}

void takeKey(DefaultsOptions& options, const CommandLine& line) {
    if (line.arguments.size() > 1) {
        options.key = utf8(line.arguments[1]);
    }
}

void takeFile(DefaultsOptions& options, const CommandLine& line) {
    if (line.arguments.size() > 1) {
        options.file = line.arguments[1];
    }
    if (options.file.empty()) {
        throw BadOption(line.command + " wants a file name, not an empty one.");
    }
}

void takeDetails(DefaultsOptions& options, const CommandLine& line) {
    switch (options.command) {
        case Command::read:
            takeKey(options, line);
            options.isRaw = line.has("raw");
            if (options.isRaw && !options.key) {
                throw BadOption("--raw wants a key.");
            }
            break;
        case Command::write:
            takeKey(options, line);
            options.value = value(line);
            break;
        case Command::delete_:
            takeKey(options, line);
            if (options.key.has_value() == line.has("all")) {
                throw BadOption("delete wants either a key or --all.");
            }
            break;
        case Command::export_:
            takeFile(options, line);
            options.isXML = isXML(line, options.file);
            break;
        case Command::import:
            takeFile(options, line);
            options.replaces = line.has("replace");
            break;
        default:
            break;
    }
}

}  // namespace

DefaultsOptions DefaultsOptions::parse(const std::vector<std::string>& arguments) {
    if (arguments.empty()) {
        throw BadOption("a command is missing; see orvalo-defaults --help.");
    }
    const auto& first = arguments.front();
    if (first == "--help" || first == "-h" || first == "help") {
        return help(overview());
    }
    DefaultsOptions options;
    if (first == "--version") {
        options.command = Command::version;
        return options;
    }
    const auto* syntax = commandSyntax(first);
    if (syntax == nullptr) {
        throw BadOption(inQuotes(first) + " is no command; see orvalo-defaults --help.");
    }
    const auto line = CommandLine::parse(*syntax, {arguments.begin() + 1, arguments.end()});
    if (line.wantsHelp) {
        return help(helpOf(*syntax));
    }
    options.command = syntax->command;
    if (!line.arguments.empty()) {
        options.domain = utf8(line.arguments.front());
    }
    takeDetails(options, line);
    return options;
}

}  // namespace orvalo
