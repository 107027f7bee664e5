#pragma once

#include <array>
#include <cstdint>

#include "effect/dsp/DelayLine.h"
#include "effect/dsp/MovingAverage.h"
#include "effect/dsp/SlidingMinimum.h"
#include "effect/dsp/SmoothedValue.h"
#include "effect/dsp/TruePeak.h"

namespace orvalo::effect {

/// Keeps the true peaks of two channels below a ceiling, by one gain for both. The gain that each
/// true peak needs is held for the time by which the limiter looks ahead, then released
/// exponentially, then averaged twice over half that time each. So the gain has fallen, without a
/// step, before the first sample that contributes to the peak.
class TruePeakLimiter {
  public:
    explicit TruePeakLimiter(double sampleRate);

    /// The delay of the signal, in frames.
    std::uint32_t latency() const { return latency_; }

    void reset();

    /// ceiling: in dB of full scale.
    void setCeiling(float ceiling, bool atOnce) { ceiling_.moveTo(ceiling, atOnce); }

    /// Delays and limits `count` frames in place, at most chunkFrames.
    void process(float* left, float* right, std::uint32_t count);

  private:
    /// Frames of each of the two averages.
    static std::uint32_t halfLength(double sampleRate);

    std::uint32_t half_;
    std::uint32_t latency_;
    double releaseTake_;
    SmoothedValue ceiling_;
    std::array<TruePeak, 2> peaks_;
    std::array<DelayLine, 2> delays_;
    SlidingMinimum minimum_;
    std::array<MovingAverage, 2> averages_;
    double released_ = 1.0;
};

}  // namespace orvalo::effect
