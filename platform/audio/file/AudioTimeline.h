#pragma once

#include <cstdint>
#include <vector>

#include "platform/audio/file/AudioContainer.h"
#include "platform/audio/signal/AVAudioFormat.h"

namespace orvalo {

/// Which of a stream's decoded frames a file plays, in which order. Decoded frames count from the
/// stream's time 0, at the rate of the decoder's output.
struct AudioTimeline {
    struct Segment {
        std::int64_t decodedStart = 0;  ///< kSilence: silence.
        std::int64_t frameCount = 0;    ///< Above 0.
    };
    static constexpr std::int64_t kSilence = INT64_MIN;

    std::vector<Segment> segments;
    std::int64_t length = 0;  ///< The segments' sum.
};

/// The timeline that the container states, with the coder's priming and padding left out. Moves
/// the container. Throws NSError when there is nothing to hear, or the file is shorter than it
/// states. Audio with a good header is not read through.
AudioTimeline statedTimeline(AudioContainer& container, const AVAudioFormat& decoded);

}  // namespace orvalo
