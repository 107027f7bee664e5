#include "effect/dsp/LevelMeter.h"

#include <algorithm>

#include "effect/dsp/Decibels.h"

namespace orvalo::effect {

void LevelMeter::update(float peak, std::uint32_t frames) {
    const float fallen = level_ - fallPerFrame_ * static_cast<float>(frames);
    level_ = std::max({lowest, fallen, decibelsFromAmplitude(peak)});
}

}  // namespace orvalo::effect
