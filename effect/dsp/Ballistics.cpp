#include "effect/dsp/Ballistics.h"

#include <algorithm>

#include "effect/dsp/TimeConstant.h"

namespace orvalo::effect {

namespace {

/// How long a gap between crests is remembered, in milliseconds.
constexpr float gapMemory = 500.0F;
/// The hold is longer than the gap, because crests do not fall on frames.
constexpr double gapMargin = 1.1;

}  // namespace

Ballistics::Ballistics(double sampleRate)
    : sampleRate_(sampleRate),
      longestGap_(0.001 * longestGapMilliseconds * sampleRate),
      gapKeep_(keptPerFrame(gapMemory, sampleRate)) {}

void Ballistics::setTimes(float attack, float release) {
    if (attack != attackTime_) {
        attackTime_ = attack;
        attackKeep_ = keptPerFrame(attack, sampleRate_);
        attackTake_ = takenPerFrame(attack, sampleRate_);
    }
    if (release != releaseTime_) {
        releaseTime_ = release;
        releaseKeep_ = keptPerFrame(release, sampleRate_);
        releaseTake_ = takenPerFrame(release, sampleRate_);
    }
}

void Ballistics::setAdaptive(bool isAdaptive) {
    isAdaptive_ = isAdaptive;
    if (!isAdaptive) {
        learnedGap_ = 0.0;
    }
}

void Ballistics::reset() {
    held_ = smooth_ = learnedGap_ = sinceCrest_ = 0.0;
}

bool Ballistics::hasStateOf(const Ballistics& other) const {
    return held_ == other.held_ && smooth_ == other.smooth_ && learnedGap_ == other.learnedGap_ &&
           sinceCrest_ == other.sinceCrest_;
}

void Ballistics::continueFrom(const Ballistics& other) {
    held_ = other.held_;
    smooth_ = other.smooth_;
    learnedGap_ = other.learnedGap_ * sampleRate_ / other.sampleRate_;
    sinceCrest_ = other.sinceCrest_ * sampleRate_ / other.sampleRate_;
}

void Ballistics::process(const float* asked, float* held, float* reduction, std::uint32_t count) {
    if (holdFrames_ != 0 || isAdaptive_) {
        holdPeaks(asked, held, count);
        smooth(held, reduction, count);
        return;
    }
    // Local copies: the compiler must assume that the arrays alias the members.
    double peak = held_;
    double smooth = smooth_;
    const double releaseKeep = releaseKeep_;
    const double releaseTake = releaseTake_;
    const double attackKeep = attackKeep_;
    const double attackTake = attackTake_;
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto aim = static_cast<double>(asked[i]);
        peak = std::max(aim, releaseKeep * peak + releaseTake * aim);
        smooth = attackKeep * smooth + attackTake * peak;
        held[i] = static_cast<float>(peak);
        reduction[i] = static_cast<float>(smooth);
    }
    held_ = peak;
    smooth_ = smooth;
}

void Ballistics::holdPeaks(const float* asked, float* held, std::uint32_t count) {
    double peak = held_;
    const double tolerance = isAdaptive_ ? crestTolerance : 0.0;
    const double longest = isAdaptive_ ? longestGap_ : 0.0;
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto aim = static_cast<double>(asked[i]);
        learnedGap_ *= gapKeep_;
        if (aim >= peak - tolerance) {
            if (sinceCrest_ <= longest) {
                learnedGap_ = std::max(learnedGap_, gapMargin * sinceCrest_);
            }
            sinceCrest_ = 0.0;
            peak = std::max(peak, aim);
        } else {
            sinceCrest_ += 1.0;
            if (sinceCrest_ > std::max(static_cast<double>(holdFrames_), learnedGap_)) {
                peak = std::max(aim, releaseKeep_ * peak + releaseTake_ * aim);
            }
        }
        held[i] = static_cast<float>(peak);
    }
    held_ = peak;
}

void Ballistics::smooth(const float* held, float* reduction, std::uint32_t count) {
    double smooth = smooth_;
    for (std::uint32_t i = 0; i < count; ++i) {
        smooth = attackKeep_ * smooth + attackTake_ * static_cast<double>(held[i]);
        reduction[i] = static_cast<float>(smooth);
    }
    smooth_ = smooth;
}

}  // namespace orvalo::effect
