#pragma once

#include "platform/audio/unit/AUAudioUnit.h"

namespace orvalo {

/// A handler that prints each MIDI event of an effect from the main queue: always three bytes, with
/// a warning when the event has another length. Copies the bytes, returns 0 and ignores the cable.
/// Render thread: does not allocate, lock or block.
AUMIDIOutputEventBlock makeMIDIReport();

}  // namespace orvalo
