#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "platform/audio/unit/MIDIMetaEvent.h"
#include "platform/foundation/NSObject.h"

namespace orvalo {

/// A MIDI meta event of any length, in one block of memory of its own that is laid out as the
/// platform's record. Never changes; any thread.
class MyMetaEvent : public NSObject {
  public:
    /// A length of data that the record cannot state is a fatal error.
    MyMetaEvent(std::uint8_t type, const std::vector<std::uint8_t>& data);

    /// Calls body once, at once, with the record, which is there until body returns.
    void withMIDIMetaEventPtr(const std::function<void(const MIDIMetaEvent*)>& body) const;

    const std::int64_t size;  ///< The block's length in bytes: the record's and the data's.

  private:
    const std::vector<std::byte> mem;
};

/// Makes a sequencer-specific event and hands its record to a body that does nothing.
void test_MyMetaEvent();

}  // namespace orvalo
