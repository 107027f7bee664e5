#pragma once

#include <array>
#include <cstdint>

#include "effect/dsp/Chunk.h"

namespace orvalo::effect {

/// The true peak of a channel, frame by frame: the highest of four interpolated samples, by the
/// filter of Recommendation ITU-R BS.1770-4, Annex 2, and of the sample itself.
class TruePeak {
  public:
    static constexpr std::uint32_t taps = 12;
    /// A sample contributes to the peaks of this many frames, its own first.
    static constexpr std::uint32_t span = taps;

    void reset();

    /// Raises each of `count` peaks, at most chunkFrames, to the true peak at its frame. A peak
    /// belongs to the frame, and to the taps - 1 frames before it.
    void raise(const float* samples, float* peaks, std::uint32_t count);

    /// The highest true peak of `count` samples, at most chunkFrames, if it exceeds `start`, else
    /// `start`. peak: their highest absolute value. Computes nothing that cannot exceed `start`.
    float highest(const float* samples, std::uint32_t count, float peak, float start);

  private:
    /// The samples before the first one of a chunk.
    static constexpr std::uint32_t before = taps - 1;

    /// Raises the peaks of the last `count` frames.
    void interpolate(float* peaks, std::uint32_t count) const;
    void keepLast(std::uint32_t count);

    std::array<float, before + chunkFrames> samples_{};
    float lastPeak_ = 0.0F;  // No sample before the first one is higher.
};

}  // namespace orvalo::effect
