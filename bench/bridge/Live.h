#pragma once

#include <cstdint>
#include <string>

#include "platform/audio/unit/AUAudioUnit.h"

namespace orvalo::bench {

/// Lets an output of the system's pull from a unit for so many seconds, while a thread keeps one
/// processor busy; returns how often the output has run dry. Throws NSError.
std::uint64_t xrunsWhileBusy(AUAudioUnit& unit, int seconds);

}  // namespace orvalo::bench
