#pragma once

#include <algorithm>

#include "effect/dsp/Extremes.h"
#include "effect/dsp/Parameter.h"

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

    /// The most reduction in dB that Range allows.
    static float mostReduction(const ParameterValues& values) {
        // More than the curve gives for any sample that the effect takes.
        constexpr float unlimited = 400.0F;
        const float most = values[Parameter::range];
        return most < range(Parameter::range).maximum ? most : unlimited;
    }

    /// The gain reduction in dB for a level in dB, by the curve and the range.
    static float reduction(const ParameterValues& values, float level) {
        return std::min(
            reduction(level, values[Parameter::threshold], slopeFromRatio(values[Parameter::ratio]),
                      values[Parameter::knee]),
            mostReduction(values));
    }

    /// The make-up gain in dB; the automatic one is half the reduction at 0 dB.
    static float makeup(const ParameterValues& values) {
        return values.isOn(Parameter::autoMakeup) ? 0.5F * reduction(values, 0.0F)
                                                  : values[Parameter::makeup];
    }
};

}  // namespace orvalo::effect
