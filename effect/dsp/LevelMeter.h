#pragma once

#include <algorithm>
#include <cstdint>

#include "effect/dsp/Decibels.h"

namespace orvalo::effect {

/// A peak meter in dB of full scale. Rises at once, holds for a given time and falls by 24 dB per
/// second, so that a display that reads it a few times per second misses no peak.
class LevelMeter {
  public:
    /// In dB of full scale.
    static constexpr float lowest = -90.0F;
    /// In dB.
    static constexpr float fallPerSecond = 24.0F;

    explicit LevelMeter(double sampleRate, double holdSeconds = 0.0)
        : fallPerFrame_(static_cast<float>(fallPerSecond / sampleRate)),
          holdFrames_(static_cast<float>(holdSeconds * sampleRate)) {}

    void reset() { level_ = lowest; }

    /// Advances by a block of `frames` frames. peak: its highest absolute sample.
    void update(float peak, std::uint32_t frames) {
        const float fallen = levelAfter(frames);
        held_ = std::max(0.0F, held_ - static_cast<float>(frames));
        const float level = decibelsFromAmplitude(peak);
        if (level >= fallen) {
            held_ = holdFrames_;
        }
        level_ = std::max(fallen, level);
    }

    /// The level after a silent block of `frames` frames: lower peaks would not change it.
    float levelAfter(std::uint32_t frames) const {
        const float falling = std::max(0.0F, static_cast<float>(frames) - held_);
        return std::max(lowest, level_ - fallPerFrame_ * falling);
    }

    /// In dB, at least `lowest`.
    float level() const { return level_; }

  private:
    float fallPerFrame_;
    float holdFrames_;
    float held_ = 0.0F;  // Frames until the level falls.
    float level_ = lowest;
};

}  // namespace orvalo::effect
