#pragma once

#include <cstdint>

namespace orvalo {

/// The format of audio between nodes: planar 32-bit float. A value.
struct AVAudioFormat {
    double sampleRate = 48000.0;     ///< Hz, above 0.
    std::uint32_t channelCount = 2;  ///< 1 to kMaximumChannels.

    friend bool operator==(const AVAudioFormat&, const AVAudioFormat&) = default;
};

}  // namespace orvalo
