#pragma once

#include <lv2/atom/atom.h>

#include <cstdint>
#include <vector>

#include "tests/effect/UridMap.h"

namespace orvalo::testing {

/// A MIDI message at a frame.
struct MidiMessage {
    std::int64_t frame;
    std::vector<std::uint8_t> bytes;
    bool operator==(const MidiMessage&) const = default;
};

void PrintTo(const MidiMessage& message, std::ostream* stream);

/// A port's buffer for events, aligned and with a size as a host gives it.
class EventSequence {
  public:
    /// `size` in bytes for the whole sequence.
    EventSequence(UridMap& uris, std::uint32_t size);

    LV2_Atom_Sequence* data() { return reinterpret_cast<LV2_Atom_Sequence*>(storage_.data()); }

    /// Ready to be read: no events.
    void clear();
    /// Appends a message; the buffer must have room. Does not allocate.
    void append(std::int64_t frame, const std::uint8_t* bytes, std::uint32_t size);
    /// Ready to be written to: the size is the room.
    void offer();
    /// What was written, at frames that count from `start`.
    std::vector<MidiMessage> messages(std::int64_t start);

  private:
    std::vector<std::uint64_t> storage_;
    std::uint32_t room_;
    LV2_URID sequence_;
    LV2_URID midi_;
};

}  // namespace orvalo::testing
