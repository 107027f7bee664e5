#include "effect/dsp/Ballistics.h"

#include <algorithm>

#include "effect/dsp/TimeConstant.h"

namespace orvalo::effect {

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

void Ballistics::process(const float* asked, float* held, float* reduction, std::uint32_t count) {
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

}  // namespace orvalo::effect
