#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "effect/ui/model/Control.h"
#include "effect/ui/model/ValueText.h"

namespace orvalo::effect::ui {

namespace {

constexpr double millisecondsInSecond = 1000.0;
constexpr double hertzInKilohertz = 1000.0;
constexpr int notesInOctave = 12;

/// Without blanks, in lower case, with decimal points and ASCII minus signs.
std::string plain(std::string_view text) {
    constexpr std::string_view minus = "\u2212";
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (text.substr(i, minus.size()) == minus) {
            result += '-';
            i += minus.size() - 1;
        } else if (c == ',') {
            result += '.';
        } else if (c >= 'A' && c <= 'Z') {
            result += static_cast<char>(c - 'A' + 'a');
        } else if (c != ' ' && c != '\t') {
            result += c;
        }
    }
    return result;
}

/// The number at the start of the text, and the rest of the text.
std::optional<std::pair<double, std::string_view>> leadingNumber(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return std::nullopt;
        }
    }
    double number = 0.0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
    if (error != std::errc() || !std::isfinite(number)) {
        return std::nullopt;
    }
    return std::pair(number, text.substr(static_cast<std::size_t>(end - text.data())));
}

/// The factor of the suffix behind a number; absent when it does not belong to the unit.
std::optional<double> factor(Unit unit, std::string_view suffix) {
    if (suffix.empty()) {
        return 1.0;
    }
    switch (unit) {
        case Unit::decibels:
            return suffix == "db" ? std::optional(1.0) : std::nullopt;
        case Unit::ratio:
            return suffix == ":1" ? std::optional(1.0) : std::nullopt;
        case Unit::percent:
            return suffix == "%" ? std::optional(1.0) : std::nullopt;
        case Unit::milliseconds:
            if (suffix == "s") {
                return millisecondsInSecond;
            }
            return suffix == "ms" ? std::optional(1.0) : std::nullopt;
        case Unit::hertz:
            if (suffix == "khz" || suffix == "k") {
                return hertzInKilohertz;
            }
            return suffix == "hz" ? std::optional(1.0) : std::nullopt;
        case Unit::tempo:
            return suffix == "bpm" ? std::optional(1.0) : std::nullopt;
        case Unit::toggle:
        case Unit::choice:
        case Unit::note:
        case Unit::channel:
            break;
    }
    return std::nullopt;
}

/// Reads "c#2", or the name with its number as valueText() writes it: "c#2(37)".
std::optional<double> noteByName(std::string_view text) {
    constexpr std::string_view letters = "c.d.ef.g.a.b";
    const auto letter =
        text.empty() || text.front() == '.' ? std::string_view::npos : letters.find(text.front());
    if (letter == std::string_view::npos) {
        return std::nullopt;
    }
    text.remove_prefix(1);
    int semitone = static_cast<int>(letter);
    if (text.starts_with('#') || text.starts_with('b')) {
        semitone += text.front() == '#' ? 1 : -1;
        text.remove_prefix(1);
    }
    int octave = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), octave);
    if (error != std::errc() || std::abs(octave) > notesInOctave) {
        return std::nullopt;
    }
    const int note = (octave + 1) * notesInOctave + semitone;
    const auto rest = text.substr(static_cast<std::size_t>(end - text.data()));
    if (!rest.empty() && rest != "(" + std::to_string(note) + ")") {
        return std::nullopt;
    }
    return note;
}

/// The value of a choice, or of a value with a name such as "Off".
std::optional<double> valueByName(Parameter parameter, std::string_view text) {
    const auto& choices = control(parameter).choices;
    for (std::size_t i = 0; i < choices.size(); ++i) {
        if (text == plain(choices[i].name) || text == plain(choices[i].shortName)) {
            return static_cast<double>(i);
        }
    }
    if (control(parameter).unit == Unit::toggle && (text == "on" || text == "off")) {
        return text == "on" ? 1.0 : 0.0;
    }
    for (const float end : {range(parameter).minimum, range(parameter).maximum}) {
        const Choice* name = namedValue(parameter, end);
        if (name != nullptr && (text == plain(name->name) || text == plain(name->shortName))) {
            return end;
        }
    }
    return std::nullopt;
}

std::optional<double> number(Unit unit, std::string_view text) {
    if (unit == Unit::choice) {
        return std::nullopt;
    }
    if (unit == Unit::channel && text == "all") {
        return 0.0;
    }
    if (unit == Unit::note) {
        if (const auto note = noteByName(text)) {
            return note;
        }
    }
    const auto leading = leadingNumber(text);
    if (!leading) {
        return std::nullopt;
    }
    const auto times = factor(unit, leading->second);
    return times ? std::optional(leading->first * *times) : std::nullopt;
}

/// Follows "is" in the complaint about a text that is not a value of the unit.
const char* complaintFor(Unit unit) {
    switch (unit) {
        case Unit::decibels:
            return "not a value in dB";
        case Unit::ratio:
            return "not a ratio";
        case Unit::milliseconds:
            return "not a time in ms or s";
        case Unit::percent:
            return "not a percentage";
        case Unit::note:
            return "not a note";
        case Unit::channel:
            return "not a channel";
        case Unit::hertz:
            return "not a frequency in Hz or kHz";
        case Unit::tempo:
            return "not a tempo in BPM";
        case Unit::choice:
            return "not one of the choices";
        case Unit::toggle:
            break;
    }
    return "neither on nor off";
}

}  // namespace

TypedValue typedValue(Parameter parameter, std::string_view text) {
    const auto& how = control(parameter);
    const auto& ends = range(parameter);
    const std::string read = plain(text);
    const auto named = valueByName(parameter, read);
    const auto typed = named ? named : number(how.unit, read);
    const bool mustBeWhole = how.taper == Taper::whole;
    if (!typed || (mustBeWhole && *typed != std::round(*typed))) {
        const std::string quoted = "\"" + std::string(text) + "\" is ";
        return {std::nullopt, quoted + complaintFor(how.unit)};
    }
    const auto value = static_cast<float>(*typed);
    if (value < ends.minimum || value > ends.maximum) {
        return {std::nullopt, "From " + valueText(parameter, ends.minimum) + " to " +
                                  valueText(parameter, ends.maximum)};
    }
    return {value, {}};
}

}  // namespace orvalo::effect::ui
