#pragma once

#include <cstddef>
#include <cstdint>

namespace orvalo {

/// A MIDI meta event in the platform's layout: dataLength bytes of data from byte 8 on.
struct MIDIMetaEvent {
    std::uint8_t metaEventType;
    std::uint8_t unused1;
    std::uint8_t unused2;
    std::uint8_t unused3;
    std::uint32_t dataLength;
    std::uint8_t data[1];  // NOLINT(modernize-avoid-c-arrays): the record as it is published.
};

static_assert(offsetof(MIDIMetaEvent, metaEventType) == 0);
static_assert(offsetof(MIDIMetaEvent, dataLength) == 4);
static_assert(offsetof(MIDIMetaEvent, data) == 8);
static_assert(sizeof(MIDIMetaEvent) == 12);

}  // namespace orvalo
