#pragma once

#include "platform/audio/unit/AudioComponentDescription.h"

namespace orvalo {

/// The effect's codes in the component registry: a music effect, with audio and MIDI inputs.
inline constexpr AudioComponentDescription orvaloComponentDescription{
    .componentType = fourCharCode("aumf"),
    .componentSubType = fourCharCode("orVL"),
    .componentManufacturer = fourCharCode("TSLY"),
    .componentFlags = 2,
    .componentFlagsMask = 0,
};

/// The context name that the effect gets from its host.
inline constexpr auto orvaloContextName = "running in distribution host";

}  // namespace orvalo
