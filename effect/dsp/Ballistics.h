#pragma once

#include <cstdint>

namespace orvalo::effect {

/// Attack and release of the gain reduction, in dB, one value per frame: a peak hold that decays
/// exponentially with the release time, followed by exponential smoothing with the attack time. A
/// rise reaches 63 % after the attack time. A steady tone gives a steady reduction, because the
/// held peak bridges the gaps between its crests.
class Ballistics {
  public:
    explicit Ballistics(double sampleRate) : sampleRate_(sampleRate) { setTimes(10.0F, 100.0F); }

    /// Time constants in milliseconds, both above 0.
    void setTimes(float attack, float release);

    void reset() { held_ = smooth_ = 0.0; }

    /// Processes `count` frames. asked: the static reduction; held: receives its peak hold;
    /// reduction: receives the smoothed reduction. The arrays must not overlap.
    void process(const float* asked, float* held, float* reduction, std::uint32_t count);

  private:
    double sampleRate_;
    float attackTime_ = 0.0F;
    float releaseTime_ = 0.0F;
    double attackKeep_ = 0.0;
    double attackTake_ = 1.0;
    double releaseKeep_ = 0.0;
    double releaseTake_ = 1.0;
    double held_ = 0.0;
    double smooth_ = 0.0;
};

}  // namespace orvalo::effect
