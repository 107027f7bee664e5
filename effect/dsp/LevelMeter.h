#pragma once

#include <cstdint>

namespace orvalo::effect {

/// A peak meter in dB of full scale: up at once, down by 24 dB a second, so that a reader that
/// looks a few times a second misses no peak.
class LevelMeter {
  public:
    static constexpr float lowest = -90.0F;
    static constexpr float fallPerSecond = 24.0F;

    explicit LevelMeter(double sampleRate)
        : fallPerFrame_(static_cast<float>(fallPerSecond / sampleRate)) {}

    void reset() { level_ = lowest; }

    /// Goes on by a block of `frames` frames whose highest absolute sample was `peak`.
    void update(float peak, std::uint32_t frames);

    /// In dB, at least `lowest`.
    float level() const { return level_; }

  private:
    float fallPerFrame_;
    float level_ = lowest;
};

}  // namespace orvalo::effect
