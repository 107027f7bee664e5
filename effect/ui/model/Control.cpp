#include "effect/ui/model/Control.h"

#include <array>

namespace orvalo::effect::ui {

namespace {

/// In the order of the parameters.
constexpr std::array<Control, shownParameterCount> controls{{
    {"Enabled", "On", Unit::toggle, Taper::whole, 1.0, 1.0},
    {"Threshold", "Thresh", Unit::decibels, Taper::linear, 1.0, 0.1},
    {"Ratio", "Ratio", Unit::ratio, Taper::logarithmic, 0.0, 0.0},
    {"Knee", "Knee", Unit::decibels, Taper::linear, 0.5, 0.1},
    {"Attack", "Attack", Unit::milliseconds, Taper::logarithmic, 0.0, 0.0},
    {"Release", "Rel.", Unit::milliseconds, Taper::logarithmic, 0.0, 0.0},
    {"Make-up", "Make", Unit::decibels, Taper::linear, 0.5, 0.1},
    {"Mix", "Mix", Unit::percent, Taper::linear, 5.0, 1.0},
    {"Output", "Out", Unit::decibels, Taper::linear, 0.5, 0.1},
    {"Depth", "Depth", Unit::decibels, Taper::linear, 1.0, 0.1},
    {"Release", "Rel.", Unit::milliseconds, Taper::logarithmic, 0.0, 0.0},
    {"Level", "Level", Unit::decibels, Taper::linear, 0.5, 0.1},
    {"Note", "Note", Unit::note, Taper::whole, 1.0, 1.0},
    {"Channel", "Chan.", Unit::channel, Taper::whole, 1.0, 1.0},
}};

}  // namespace

const Control& control(Parameter parameter) {
    return controls.at(static_cast<std::size_t>(parameter));
}

const ParameterRange& range(Parameter parameter) {
    return parameterRanges.at(static_cast<std::size_t>(parameter));
}

}  // namespace orvalo::effect::ui
