#pragma once

#include <cstddef>
#include <span>

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// The unit of a parameter's values.
enum class Unit : std::uint8_t {
    toggle,
    choice,
    decibels,
    ratio,
    milliseconds,
    hertz,
    tempo,
    percent,
    note,
    channel
};

/// How a parameter's range is mapped to the positions of its knob.
enum class Taper : std::uint8_t { linear, logarithmic, whole };

/// The name of a value of a choice, and the one for narrow cells.
struct Choice {
    const char* name;
    const char* shortName;
};

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
    /// The values 0, 1 and so on of a choice.
    std::span<const Choice> choices{};
};

/// What a control looks like. A choice of many values is a knob.
enum class Look : std::uint8_t { knob, toggle, segments };

const Control& control(Parameter parameter);
Look lookOf(Parameter parameter);

/// The name of a value that means more than its number, such as "Off"; null for other values.
const Choice* namedValue(Parameter parameter, float value);

/// Whether the other values let the parameter have an effect: the ceiling has none while it is off.
bool isInForce(const ParameterValues& values, Parameter parameter);

}  // namespace orvalo::effect::ui
