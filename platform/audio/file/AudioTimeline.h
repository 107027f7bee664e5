#pragma once

#include <cstdint>
#include <vector>

#include "platform/audio/file/AudioContainer.h"
#include "platform/audio/signal/AVAudioFormat.h"

namespace orvalo {

/// The decoded frames that a file plays, in their order. Decoded frames count from the stream's
/// time 0, at the rate of the decoder's output.
struct AudioTimeline {
    struct Segment {
        std::int64_t decodedStart = 0;  ///< kSilence: silence.
        std::int64_t frameCount = 0;    ///< Above 0.
    };
    static constexpr std::int64_t kSilence = INT64_MIN;

    std::vector<Segment> segments;
    std::int64_t length = 0;  ///< The segments' sum.
};

/// The timeline that the container states, without the coder's priming and padding. Moves the
/// container's position; reads the whole file only when its header states no length. Throws NSError
/// when the length is 0 or the file is shorter than it states.
AudioTimeline statedTimeline(AudioContainer& container, const AVAudioFormat& decoded);

}  // namespace orvalo
