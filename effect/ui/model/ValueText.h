#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// A value with its unit as it is shown: "-18.0 dB", "4.0:1", "120 ms", "1.25 s", "50 %",
/// "C2 (36)", "All". Always with a decimal point, whatever the locale.
std::string valueText(Parameter parameter, float value);

/// The same without the unit, for narrow places.
std::string shortValueText(Parameter parameter, float value);

/// A number with at least `least` and at most `most` decimals.
std::string decimalText(double value, int least, int most);

/// What was typed for a value: the value, or what is wrong with the text.
struct TypedValue {
    std::optional<float> value;
    std::string complaint;
};

/// Reads what valueText writes, and what people type: with or without the unit, seconds for
/// milliseconds ("0.2 s"), notes by number or name ("C2", "f#3", middle C is C4), a comma for the
/// decimal point. A value outside the range is refused, with the range in the complaint.
TypedValue typedValue(Parameter parameter, std::string_view text);

}  // namespace orvalo::effect::ui
