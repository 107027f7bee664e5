#pragma once

#include <cstdint>

namespace orvalo::effect {

/// Attack, hold and release of the gain reduction, in dB, one value per frame: a peak hold that
/// decays exponentially with the release time after the hold time, followed by exponential
/// smoothing with the attack time. A rise reaches 63 % after the attack time. A steady tone gives a
/// steady reduction, because the held peak bridges the gaps between its crests.
///
/// With adaptive smoothing the held peak waits for the next crest before it decays: the time from
/// crest to crest is measured, and lengthens the hold up to 30 ms. Short times then do not follow
/// the waveform of a low tone, which would distort it.
class Ballistics {
  public:
    /// Crests further apart, those of a tone below 17 Hz, count as separate peaks.
    static constexpr double longestGapMilliseconds = 30.0;
    /// A crest may be this much lower than the held peak, in dB.
    static constexpr double crestTolerance = 0.1;

    explicit Ballistics(double sampleRate);

    /// Time constants in milliseconds, both above 0.
    void setTimes(float attack, float release);
    /// Frames for which a peak is held before it decays.
    void setHold(std::uint32_t frames) { holdFrames_ = frames; }
    void setAdaptive(bool isAdaptive);

    void reset();
    bool hasStateOf(const Ballistics& other) const;
    /// Takes the reduction of another one, which may run at another rate.
    void continueFrom(const Ballistics& other);

    /// Processes `count` frames. asked: the static reduction; held: receives its peak hold;
    /// reduction: receives the smoothed reduction. The arrays must not overlap.
    void process(const float* asked, float* held, float* reduction, std::uint32_t count);

  private:
    void holdPeaks(const float* asked, float* held, std::uint32_t count);
    void smooth(const float* held, float* reduction, std::uint32_t count);

    double sampleRate_;
    float attackTime_ = 0.0F;
    float releaseTime_ = 0.0F;
    double attackKeep_ = 0.0;
    double attackTake_ = 1.0;
    double releaseKeep_ = 0.0;
    double releaseTake_ = 1.0;
    double held_ = 0.0;
    double smooth_ = 0.0;

    std::uint32_t holdFrames_ = 0;
    bool isAdaptive_ = false;
    // In frames; fractions matter for the slow decay of the learned gap.
    double longestGap_;
    double gapKeep_;
    double learnedGap_ = 0.0;
    double sinceCrest_ = 0.0;
};

}  // namespace orvalo::effect
