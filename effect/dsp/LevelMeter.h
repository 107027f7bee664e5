#pragma once

#include <algorithm>
#include <cstdint>

#include "effect/dsp/Decibels.h"

namespace orvalo::effect {

/// A peak meter in dB of full scale. Rises at once and falls by 24 dB per second, so that a display
/// that reads it a few times per second misses no peak.
class LevelMeter {
  public:
    static constexpr float lowest = -90.0F;
    static constexpr float fallPerSecond = 24.0F;

    explicit LevelMeter(double sampleRate)
        : fallPerFrame_(static_cast<float>(fallPerSecond / sampleRate)) {}

    void reset() { level_ = lowest; }

    /// Advances by a block of `frames` frames. peak: its highest absolute sample.
    void update(float peak, std::uint32_t frames) {
        const float fallen = level_ - fallPerFrame_ * static_cast<float>(frames);
        level_ = std::max({lowest, fallen, decibelsFromAmplitude(peak)});
    }

    /// In dB, at least `lowest`.
    float level() const { return level_; }

  private:
    float fallPerFrame_;
    float level_ = lowest;
};

}  // namespace orvalo::effect
