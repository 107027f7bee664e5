#pragma once

#include <cstdint>
#include <string>

#include "platform/audio/unit/AUAudioUnit.h"

namespace orvalo::bench {

/// Renders a unit to the system's audio output for that time while a thread keeps one processor
/// busy; returns the output's xruns. Throws NSError.
std::uint64_t xrunsWhileBusy(AUAudioUnit& unit, int seconds);

}  // namespace orvalo::bench
