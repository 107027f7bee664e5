#include "effect/ui/model/MeterMemory.h"

#include <algorithm>
#include <utility>

namespace orvalo::effect::ui {

Levels fallen(const Levels& levels, double seconds) {
    const auto fall = static_cast<float>(LevelMeter::fallPerSecond * seconds);
    return {.input = std::max(Levels::lowest, levels.input - fall),
            .output = std::max(Levels::lowest, levels.output - fall),
            .reduction = std::max(0.0F, levels.reduction - fall),
            .ducking = std::max(0.0F, levels.ducking - fall)};
}

bool MeterMemory::Peak::update(float now, double time) {
    if (now < level && time - since < holdSeconds) {
        return false;
    }
    since = time;
    return std::exchange(level, now) != now;
}

bool MeterMemory::update(const Levels& levels, float truePeak, double now) {
    const bool inputMoved = input_.update(levels.input, now);
    const bool outputMoved = output_.update(levels.output, now);
    const bool isInputOver = levels.input > 0.0F;
    const bool isOutputOver = levels.output > 0.0F || truePeak > 0.0F;
    const bool clipped = (isInputOver && !inputClipped_) || (isOutputOver && !outputClipped_);
    inputClipped_ = inputClipped_ || isInputOver;
    outputClipped_ = outputClipped_ || isOutputOver;
    const float highest = std::max(truePeak_, truePeak);
    const bool rose = std::exchange(truePeak_, highest) != highest;
    return inputMoved || outputMoved || clipped || rose;
}

void MeterMemory::reset() {
    truePeak_ = Levels::lowest;
    inputClipped_ = false;
    outputClipped_ = false;
}

}  // namespace orvalo::effect::ui
