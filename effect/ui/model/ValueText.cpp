#include "effect/ui/model/ValueText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "effect/ui/model/Control.h"

namespace orvalo::effect::ui {

namespace {

constexpr std::array<const char*, 12> noteNames{"C",  "C#", "D",  "D#", "E",  "F",
                                                "F#", "G",  "G#", "A",  "A#", "B"};
constexpr int notesInOctave = 12;

std::string noteName(int note) {
    return noteNames.at(static_cast<std::size_t>(note % notesInOctave)) +
           std::to_string(note / notesInOctave - 1);
}

std::string timeNumber(double milliseconds) {
    if (milliseconds < 10.0) {
        return decimalText(milliseconds, 1, 2);
    }
    return decimalText(milliseconds, milliseconds < 100.0 ? 1 : 0, 1);
}

const Choice& choice(Parameter parameter, float value) {
    const auto& choices = control(parameter).choices;
    const auto last = static_cast<long>(choices.size()) - 1;
    return choices[static_cast<std::size_t>(std::clamp(std::lround(value), 0L, last))];
}

}  // namespace

std::string decimalText(double value, int least, int most) {
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::fixed, most);
    std::string text(digits.data(), end.ptr);
    for (int i = most; i > least && text.back() == '0'; --i) {
        text.pop_back();
    }
    if (text.back() == '.') {
        text.pop_back();
    }
    // A small negative number rounds to a zero without a sign.
    if (text.find_first_not_of("-0.") == std::string::npos && text.front() == '-') {
        text.erase(0, 1);
    }
    return text;
}

std::string shortValueText(Parameter parameter, float value) {
    if (const Choice* name = namedValue(parameter, value)) {
        return name->shortName;
    }
    switch (control(parameter).unit) {
        case Unit::toggle:
            return value > 0.0F ? "On" : "Off";
        case Unit::choice:
            return choice(parameter, value).shortName;
        case Unit::hertz:
            return value >= 1000.0F ? decimalText(value / 1000.0, 1, 2) + "k"
                                    : decimalText(value, 0, 1);
        case Unit::decibels:
        case Unit::ratio:
            return decimalText(value, 1, 2);
        case Unit::milliseconds:
            return value >= 1000.0F ? decimalText(value / 1000.0, 2, 2) + " s" : timeNumber(value);
        case Unit::percent:
        case Unit::tempo:
            return decimalText(value, 0, 1);
        case Unit::note:
            return noteName(static_cast<int>(std::lround(value)));
        case Unit::channel:
            break;
    }
    return value < 0.5F ? "All" : decimalText(value, 0, 0);
}

std::string valueText(Parameter parameter, float value) {
    if (const Choice* name = namedValue(parameter, value)) {
        return name->name;
    }
    std::string number = shortValueText(parameter, value);
    switch (control(parameter).unit) {
        case Unit::decibels:
            return number + " dB";
        case Unit::ratio:
            return number + ":1";
        case Unit::milliseconds:
            return value >= 1000.0F ? number : number + " ms";
        case Unit::percent:
            return number + " %";
        case Unit::hertz:
            return value >= 1000.0F ? decimalText(value / 1000.0, 1, 2) + " kHz" : number + " Hz";
        case Unit::tempo:
            return number + " BPM";
        case Unit::choice:
            return choice(parameter, value).name;
        case Unit::note:
            return number + " (" + decimalText(value, 0, 0) + ")";
        case Unit::toggle:
        case Unit::channel:
            break;
    }
    return number;
}

}  // namespace orvalo::effect::ui
