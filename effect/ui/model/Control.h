#pragma once

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// The first parameters; the UI has no controls for the others yet.
inline constexpr std::size_t shownParameterCount = 14;

/// The unit of a parameter's values.
enum class Unit : std::uint8_t { toggle, decibels, ratio, milliseconds, percent, note, channel };

/// How a parameter's range is mapped to the positions of its knob.
enum class Taper : std::uint8_t { linear, logarithmic, whole };

/// How a parameter is displayed and edited.
struct Control {
    const char* name;
    /// For cells that are too narrow for the name.
    const char* shortName;
    Unit unit;
    Taper taper;
    /// One step of the wheel or an arrow key, in the parameter's unit; not for a logarithmic taper.
    double step;
    /// The same with fine control. Values with a linear taper are rounded to it.
    double fineStep;
};

/// parameter: a shown one.
const Control& control(Parameter parameter);
const ParameterRange& range(Parameter parameter);

}  // namespace orvalo::effect::ui
