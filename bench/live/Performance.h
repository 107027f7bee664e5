#pragma once

#include <cstdint>
#include <memory>

#include "bench/live/QuantumTimes.h"
#include "bench/live/TimedBundle.h"
#include "platform/audio/file/AVAudioFile.h"
#include "platform/audio/output/AudioOutput.h"

namespace orvalo::bench {

/// What a performance saw besides the times of its quanta.
struct Outcome {
    std::uint64_t xruns;       ///< How often the output ran dry.
    std::uint64_t underruns;   ///< How often the player had less than it was asked for.
    std::uint64_t midiEvents;  ///< How many events the effect sent to the main queue.
};

/// Plays a file again and again through the effect for so many seconds, as the application does:
/// the next pass is scheduled on a serial queue, the effect's MIDI goes to the main queue. Main
/// thread. Throws NSError.
Outcome perform(std::unique_ptr<AudioOutput> output, const std::shared_ptr<AVAudioFile>& file,
                int seconds);

}  // namespace orvalo::bench
