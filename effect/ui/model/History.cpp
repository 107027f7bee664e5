#include "effect/ui/model/History.h"

#include <algorithm>
#include <cmath>

namespace orvalo::effect::ui {

bool History::record(const Levels& levels, double now) {
    const bool changed = advance(now);
    current_ = levels;
    highest_ = {.input = std::max(highest_.input, levels.input),
                .output = std::max(highest_.output, levels.output),
                .reduction = std::max(highest_.reduction, levels.reduction),
                .ducking = std::max(highest_.ducking, levels.ducking)};
    return changed;
}

bool History::advance(double now) {
    if (!started_) {
        started_ = true;
        end_ = now + secondsPerStep;
        return false;
    }
    if (now < end_) {
        return false;
    }
    const double passed = std::floor((now - end_) / secondsPerStep) + 1.0;
    // After a long pause only the last steps are visible.
    const auto count = static_cast<std::size_t>(std::min(passed, static_cast<double>(steps) + 1.0));
    bool changed = false;
    for (std::size_t i = 0; i < count; ++i) {
        close();
        changed = changed || equalSteps_ < steps;
    }
    end_ += passed * secondsPerStep;
    return changed;
}

void History::close() {
    const Levels newest = steps_[(first_ + steps - 1) % steps];
    steps_[first_] = highest_;
    first_ = (first_ + 1) % steps;
    equalSteps_ = highest_ == newest ? std::min(equalSteps_ + 1, steps) : 1;
    highest_ = current_;
}

}  // namespace orvalo::effect::ui
