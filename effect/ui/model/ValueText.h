#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// A value with its unit: "-18.0 dB", "4.0:1", "120 ms", "1.25 s", "50 %",
/// "C2 (36)", "All". Always with a decimal point, whatever the locale.
std::string valueText(Parameter parameter, float value);

/// The same without the unit, for narrow places.
std::string shortValueText(Parameter parameter, float value);

/// A number with at least `least` and at most `most` decimals.
std::string decimalText(double value, int least, int most);

/// The result of reading typed text: the value, or the complaint about the text.
struct TypedValue {
    std::optional<float> value;
    std::string complaint;
};

/// Reads the output of valueText() and typed text: with or without the unit, times in seconds
/// ("0.2 s"), notes by number or name ("C2", "f#3", middle C is C4), a decimal comma. The complaint
/// about a value outside the range names the range.
TypedValue typedValue(Parameter parameter, std::string_view text);

}  // namespace orvalo::effect::ui
