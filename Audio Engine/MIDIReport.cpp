#include "Audio Engine/MIDIReport.h"

#include <array>
#include <string>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/Print.h"
#include "platform/foundation/WorkItem.h"

namespace orvalo {

namespace {

/// Prints one event on the main queue.
struct MIDIReport {
    std::int64_t sampleTime;
    std::int64_t length;
    std::array<std::uint8_t, 3> bytes;

    void operator()() const {
        if (length != 3) {
            print("AUEnginePlayer::WARNING: The MIDI data length is not as expected.");
        }
        print("AUEnginePlayer: MIDI event from audio unit at: " + std::to_string(sampleTime) +
              ", data: " + std::to_string(bytes[0]) + ", " + std::to_string(bytes[1]) + ", " +
              std::to_string(bytes[2]));
    }
};

static_assert(WorkItem::fitsInline<MIDIReport>(), "the render thread must not allocate");

}  // namespace

AUMIDIOutputEventBlock makeMIDIReport() {
    // Captured, because DispatchQueue::main() may lock a static's guard.
    return [mainQueue = DispatchQueue::main()](std::int64_t sampleTime, std::uint8_t,
                                               std::int64_t length,
                                               const std::uint8_t* bytes) -> std::int32_t {
        mainQueue->async(MIDIReport{sampleTime, length, {bytes[0], bytes[1], bytes[2]}});
        return 0;
    };
}

}  // namespace orvalo
