#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "platform/audio/unit/MIDIMetaEvent.h"
#include "platform/foundation/NSObject.h"

namespace orvalo {

/// A MIDI meta event of any length, in one block of memory with the layout of MIDIMetaEvent.
/// Immutable: any thread.
class MyMetaEvent : public NSObject {
  public:
    /// More data than dataLength can express is a fatal error.
    MyMetaEvent(std::uint8_t type, const std::vector<std::uint8_t>& data);

    /// Calls body with the record, which is valid during the call.
    void withMIDIMetaEventPtr(const std::function<void(const MIDIMetaEvent*)>& body) const;

    const std::int64_t size;  ///< Bytes of the block: sizeof(MIDIMetaEvent) plus the data.

  private:
    const std::vector<std::byte> mem;
};

/// The dataLength of an event with so much data. More than fits is a fatal error.
std::uint32_t metaDataLength(std::size_t bytes);

/// Creates a sequencer-specific event and passes its record to an empty body.
void test_MyMetaEvent();

}  // namespace orvalo
