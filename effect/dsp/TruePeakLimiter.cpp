#include "effect/dsp/TruePeakLimiter.h"

#include <algorithm>
#include <cmath>

#include "effect/dsp/Decibels.h"
#include "effect/dsp/TimeConstant.h"

namespace orvalo::effect {

namespace {

constexpr double lookAheadSeconds = 0.0015;
constexpr float releaseMilliseconds = 80.0F;
/// The gain moves while the interpolation filter looks at twelve samples, and the gain itself is
/// rounded: the limiter aims this much below the ceiling, in dB.
constexpr float margin = 0.03F;

}  // namespace

std::uint32_t TruePeakLimiter::halfLength(double sampleRate) {
    // At low rates the gain must not move too much within the twelve samples.
    constexpr long fewest = 32;
    return static_cast<std::uint32_t>(
        std::max(fewest, std::lround(0.5 * lookAheadSeconds * sampleRate)));
}

// The minimum of `2 * half - 1 + span - 1` gains reaches back from a frame to those that the two
// averages and the interpolation filter need.
TruePeakLimiter::TruePeakLimiter(double sampleRate)
    : half_(halfLength(sampleRate)),
      latency_(2 * half_ - 2 + TruePeak::span - 1),
      releaseTake_(takenPerFrame(releaseMilliseconds, sampleRate)),
      ceiling_(sampleRate),
      delays_{DelayLine(latency_), DelayLine(latency_)},
      minimum_(latency_ + 1),
      averages_{MovingAverage(half_), MovingAverage(half_)} {}

void TruePeakLimiter::reset() {
    for (std::size_t i = 0; i < 2; ++i) {
        peaks_[i].reset();
        delays_[i].reset();
        averages_[i].reset();
    }
    minimum_.reset();
    released_ = 1.0;
}

void TruePeakLimiter::process(float* left, float* right, std::uint32_t count) {
    Chunk peaks{};
    Chunk gain;
    peaks_[0].raise(left, peaks.data(), count);
    peaks_[1].raise(right, peaks.data(), count);
    ceiling_.fill(gain.data(), count);
    for (std::uint32_t i = 0; i < count; ++i) {
        // At most 1; a silent frame must not divide by 0.
        const float allowed = amplitudeFromDecibels(gain[i] - margin);
        gain[i] = allowed / std::max(allowed, peaks[i]);
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        const double least = minimum_.next(gain[i]);
        released_ = std::min(least, released_ + releaseTake_ * (least - released_));
        gain[i] = static_cast<float>(averages_[1].next(averages_[0].next(released_)));
    }
    delays_[0].write(left, count);
    delays_[1].write(right, count);
    delays_[0].read(latency_, left, count);
    delays_[1].read(latency_, right, count);
    for (std::uint32_t i = 0; i < count; ++i) {
        left[i] *= gain[i];
        right[i] *= gain[i];
    }
}

}  // namespace orvalo::effect
