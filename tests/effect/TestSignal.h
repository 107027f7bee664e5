#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvalo::testing {

/// Two channels of samples.
struct Stereo {
    std::vector<float> left;
    std::vector<float> right;
    bool operator==(const Stereo&) const = default;
};

/// Bursts of noise that differ in level and channel, with silence between: what makes a
/// compressor work. The same for the same seed.
Stereo noiseBursts(std::size_t frames, std::uint32_t seed = 1);

/// The same value on both channels.
Stereo steady(std::size_t frames, float value);

}  // namespace orvalo::testing
