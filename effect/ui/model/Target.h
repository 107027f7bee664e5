#pragma once

#include <cstddef>

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// Something that can be pointed at.
struct Target {
    enum class Kind : std::uint8_t {
        nothing,
        previousPreset,
        presetName,
        nextPreset,
        /// The switch, or a knob with its name.
        control,
        /// A knob's value, which can be typed.
        value,
        /// An entry of the open list of presets, or a place beside it.
        presetEntry,
        outsideList,
    };

    Kind kind = Kind::nothing;
    Parameter parameter = Parameter::enabled;
    std::size_t entry = 0;

    bool operator==(const Target&) const = default;
};

}  // namespace orvalo::effect::ui
