#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvalo::testing {

/// Stereo samples.
struct Stereo {
    std::vector<float> left;
    std::vector<float> right;
    bool operator==(const Stereo&) const = default;
};

/// Bursts of noise with varying levels and channels, and silence between them. The same for the
/// same seed.
Stereo noiseBursts(std::size_t frames, std::uint32_t seed = 1);

/// The same value on both channels.
Stereo steady(std::size_t frames, float value);

}  // namespace orvalo::testing
