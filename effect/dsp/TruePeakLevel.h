#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "effect/dsp/Chunk.h"

namespace orvalo::effect {

/// The peaks between the samples of one channel: fourfold interpolation with the filter of
/// ITU-R BS.1770-4, Annex 2. Neither allocates nor locks.
class TruePeakLevel {
  public:
    static constexpr std::size_t taps = 12;

    void reset() { recent_.fill(0.0F); }

    /// The highest absolute interpolated value of up to chunkFrames samples, if it exceeds `start`,
    /// else `start`. The filter delays by six samples.
    float highest(const float* samples, std::uint32_t count, float start);

  private:
    std::array<float, taps - 1> recent_{};
};

}  // namespace orvalo::effect
