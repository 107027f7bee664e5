#include "effect/dsp/SmoothedValue.h"

#include <algorithm>
#include <cmath>

namespace orvalo::effect {

SmoothedValue::SmoothedValue(double sampleRate)
    : length_(static_cast<std::uint32_t>(std::max(1L, std::lround(0.02 * sampleRate)))) {}

void SmoothedValue::setTarget(float target) {
    if (target == target_) {
        return;
    }
    const float now = valueWithRemaining(remaining_);
    target_ = target;
    step_ = (target - now) / static_cast<float>(length_);
    remaining_ = length_;
}

void SmoothedValue::snapTo(float value) {
    target_ = value;
    remaining_ = 0;
}

void SmoothedValue::moveTo(float target, bool atOnce) {
    if (atOnce) {
        snapTo(target);
    } else {
        setTarget(target);
    }
}

float SmoothedValue::valueWithRemaining(std::uint32_t frames) const {
    return target_ - step_ * static_cast<float>(frames);
}

void SmoothedValue::fill(float* values, std::uint32_t count) {
    const std::uint32_t moving = std::min(count, remaining_);
    for (std::uint32_t i = 0; i < moving; ++i) {
        values[i] = valueWithRemaining(remaining_ - 1 - i);
    }
    remaining_ -= moving;
    std::fill(values + moving, values + count, target_);
}

}  // namespace orvalo::effect
