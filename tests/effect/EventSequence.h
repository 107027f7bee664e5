#pragma once

#include <lv2/atom/atom.h>

#include <cstdint>
#include <utility>
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

/// An aligned event buffer for a port, as given by a host.
class EventSequence {
  public:
    /// size: of the whole sequence, in bytes.
    EventSequence(UridMap& uris, std::uint32_t size);

    LV2_Atom_Sequence* data() { return reinterpret_cast<LV2_Atom_Sequence*>(storage_.data()); }

    /// Makes it an empty input sequence.
    void clear();
    /// Appends a message. The buffer must have room. Does not allocate.
    void append(std::int64_t frame, const std::uint8_t* bytes, std::uint32_t size);
    /// Appends a time:Position object. values: pairs of a local name in the time vocabulary, such
    /// as "beat", and a number, which is stored as a double.
    void appendPosition(std::int64_t frame,
                        const std::vector<std::pair<const char*, double>>& values);
    /// Appends an object of that class without properties.
    void appendObject(std::int64_t frame, const char* uri);
    /// Makes it an output buffer: sets the size to the capacity.
    void offer();
    /// The written messages, with `start` added to their frames.
    std::vector<MidiMessage> messages(std::int64_t start);
    /// The bodies of the written objects; they are no messages.
    std::vector<std::vector<std::uint8_t>> objects();

  private:
    void append(std::int64_t frame, LV2_URID type, const void* bytes, std::uint32_t size);

    UridMap& uris_;
    std::vector<std::uint64_t> storage_;
    std::uint32_t room_;
    LV2_URID sequence_;
    LV2_URID midi_;
    LV2_URID object_;
};

}  // namespace orvalo::testing
