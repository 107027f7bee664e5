#pragma once

#include "platform/audio/unit/AudioComponentDescription.h"

namespace orvalo {

/// The effect's codes in the component registry: a music effect, which also takes MIDI.
inline constexpr AudioComponentDescription orvaloComponentDescription{
    .componentType = fourCharCode("aumf"),
    .componentSubType = fourCharCode("orVL"),
    .componentManufacturer = fourCharCode("TSLY"),
    .componentFlags = 2,
    .componentFlagsMask = 0,
};

/// What the effect is told of the host that it runs in.
inline constexpr auto orvaloContextName = "running in distribution host";

}  // namespace orvalo
