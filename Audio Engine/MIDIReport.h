#pragma once

#include "platform/audio/unit/AUAudioUnit.h"

namespace orvalo {

/// A handler that prints each MIDI event of an effect from the main queue: always three bytes, with
/// a warning when the event has another length. It copies them before it returns 0, ignores the
/// cable, and keeps the render thread's promises.
AUMIDIOutputEventBlock makeMIDIReport();

}  // namespace orvalo
