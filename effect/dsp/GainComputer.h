#pragma once

#include <algorithm>

namespace orvalo::effect {

/// The static curve of a compressor: the gain reduction in dB that a level in dB asks for. Below
/// the knee nothing, above it `slope` (1 - 1 / ratio) times the excess over the threshold, inside
/// it the parabola that joins both smoothly.
class GainComputer {
  public:
    /// The narrowest knee in dB; a narrower one is hard, and differs from this by less than
    /// 0.0002 dB.
    static constexpr float hardKnee = 0.001F;

    /// Gain reduction in dB, never negative; knee in dB from its lower to its upper end.
    static float reduction(float level, float threshold, float slope, float knee) {
        const float width = std::max(knee, hardKnee);
        const float half = 0.5F * width;
        const float excess = level - threshold;
        const float inKnee = std::min(std::max(excess + half, 0.0F), width);
        const float aboveKnee = std::max(excess - half, 0.0F);
        return slope * (inKnee * inKnee / (width + width) + aboveKnee);
    }

    /// The slope that belongs to a ratio of at least 1.
    static float slopeFromRatio(float ratio) { return 1.0F - 1.0F / ratio; }
};

}  // namespace orvalo::effect
