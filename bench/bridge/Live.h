#pragma once

#include <cstdint>

#include "platform/audio/unit/AUAudioUnit.h"

namespace orvalo::bench {

/// Renders an effect to the system's audio output for so many seconds while a thread keeps one
/// processor busy. Returns the output's xruns. Throws NSError.
std::uint64_t xrunsWhileBusy(AUAudioUnit& unit, int seconds);

}  // namespace orvalo::bench
