#pragma once

#include <cstdint>
#include <vector>

#include "effect/dsp/Chunk.h"

namespace orvalo::effect {

/// Converts a channel to a multiple of its rate and back, with linear phase. Both filters are
/// windowed sincs with the window of J. F. Kaiser ("Nonrecursive digital filter design using the
/// I0-sinh window function", 1974): -6 dB at half the lower rate, below -110 dB from 0.58 times
/// that rate on.
class Oversampler {
  public:
    /// Frames at the lower rate by which the way up and back delays the signal.
    static constexpr std::uint32_t latency = 48;

    /// factor: 2 or 4.
    explicit Oversampler(std::uint32_t factor);

    void reset();

    /// Converts `count` frames to factor * count ones, at most chunkFrames.
    void up(const float* samples, float* oversampled, std::uint32_t count);
    /// Converts factor * count frames, at most chunkFrames, back to `count` ones.
    void down(const float* oversampled, float* samples, std::uint32_t count);

  private:
    std::uint32_t factor_;
    /// The coefficients for each of the frames between two frames, oldest frame first, and all
    /// coefficients.
    std::vector<std::vector<float>> phases_;
    std::vector<float> all_;
    /// The frames that the filters still need, and room for a chunk behind them.
    std::vector<float> lower_;
    std::vector<float> higher_;
};

}  // namespace orvalo::effect
