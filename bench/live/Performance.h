#pragma once

#include <cstdint>
#include <memory>

#include "bench/live/QuantumTimes.h"
#include "bench/live/TimedBundle.h"
#include "platform/audio/file/AVAudioFile.h"
#include "platform/audio/output/AudioOutput.h"

namespace orvalo::bench {

/// The counts of a performance.
struct Outcome {
    std::uint64_t xruns;       ///< Periods that the output missed.
    std::uint64_t underruns;   ///< Render calls for which the player had too few frames.
    std::uint64_t midiEvents;  ///< Events that the effect sent to the main queue.
};

/// Plays a file through the effect, pass after pass, for so many seconds. As in the application, a
/// serial queue schedules the next pass and the main queue receives the effect's MIDI. Main thread.
/// Throws NSError.
Outcome perform(std::unique_ptr<AudioOutput> output, const std::shared_ptr<AVAudioFile>& file,
                int seconds);

}  // namespace orvalo::bench
