#pragma once

#include <cstddef>
#include <vector>

namespace orvalo {

/// Stereo samples in memory; both sides have the same length.
struct StereoSound {
    std::vector<float> left;
    std::vector<float> right;

    std::size_t frames() const { return left.size(); }
    void resize(std::size_t frames) {
        left.resize(frames);
        right.resize(frames);
    }
    /// Multiplies every sample.
    void scale(float factor);
    /// The largest magnitude of a sample.
    float peak() const;
};

}  // namespace orvalo
