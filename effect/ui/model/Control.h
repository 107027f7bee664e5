#pragma once

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// What a parameter's numbers stand for.
enum class Unit : std::uint8_t { toggle, decibels, ratio, milliseconds, percent, note, channel };

/// How a parameter's range lies along the way of its knob.
enum class Taper : std::uint8_t { linear, logarithmic, whole };

/// How a parameter is shown and turned.
struct Control {
    const char* name;
    /// For cells that are too narrow for the name.
    const char* shortName;
    Unit unit;
    Taper taper;
    /// One turn of the wheel or one arrow key, in the parameter's unit; on a logarithmic way as a
    /// share of the whole way.
    double step;
    /// The same with fine control; on a linear way also what turned values are rounded to.
    double fineStep;
};

const Control& control(Parameter parameter);
const ParameterRange& range(Parameter parameter);

}  // namespace orvalo::effect::ui
