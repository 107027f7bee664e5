#pragma once

#include <algorithm>

#include "effect/dsp/Extremes.h"

namespace orvalo::effect {

/// The static curve of a compressor: the gain reduction in dB for a level in dB. Below the knee 0,
/// above it `slope` (1 - 1 / ratio) times the excess over the threshold, within it the parabola
/// that joins both smoothly.
class GainComputer {
  public:
    /// The narrowest knee in dB. A hard knee differs from it by less than 0.0002 dB.
    static constexpr float hardKnee = 0.001F;

    /// Gain reduction in dB, at least 0. knee: width in dB.
    static float reduction(float level, float threshold, float slope, float knee) {
        const float width = std::max(knee, hardKnee);
        const float half = 0.5F * width;
        const float excess = level - threshold;
        const float inKnee = smaller(positivePart(excess + half), width);
        const float aboveKnee = positivePart(excess - half);
        return slope * (inKnee * inKnee / (width + width) + aboveKnee);
    }

    /// The slope for a ratio of at least 1.
    static float slopeFromRatio(float ratio) { return 1.0F - 1.0F / ratio; }
};

}  // namespace orvalo::effect
