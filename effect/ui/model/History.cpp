#include "effect/ui/model/History.h"

#include <algorithm>
#include <cmath>

namespace orvalo::effect::ui {

Levels Levels::highest(const Levels& one, const Levels& other) {
    return {.input = std::max(one.input, other.input),
            .output = std::max(one.output, other.output),
            .reduction = std::max(one.reduction, other.reduction),
            .ducking = std::max(one.ducking, other.ducking)};
}

bool History::record(const Levels& levels, double now) {
    const bool changed = advance(now);
    current_ = levels;
    highest_ = Levels::highest(highest_, levels);
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
    const auto count =
        static_cast<std::size_t>(std::min(passed, static_cast<double>(capacity) + 1.0));
    bool changed = false;
    for (std::size_t i = 0; i < count; ++i) {
        close();
        changed = changed || (closed_ % stepsPerPoint() == 0 && equalSteps_ < visibleSteps());
    }
    end_ += passed * secondsPerStep;
    return changed;
}

void History::skip(double now) {
    end_ = std::max(end_, now + secondsPerStep);
}

void History::close() {
    const Levels newest = steps_[(closed_ - 1) % capacity];
    steps_[closed_ % capacity] = highest_;
    ++closed_;
    equalSteps_ = highest_ == newest ? std::min(equalSteps_ + 1, capacity) : 1;
    highest_ = current_;
}

std::size_t History::visibleSteps() const {
    return static_cast<std::size_t>(std::lround(spans.at(span_) / secondsPerStep));
}

std::size_t History::stepsPerPoint() const {
    return (visibleSteps() + mostPoints - 1) / mostPoints;
}

std::size_t History::points() const {
    return visibleSteps() / stepsPerPoint();
}

Levels History::point(std::size_t i) const {
    const std::size_t size = stepsPerPoint();
    const std::size_t end = closed_ - closed_ % size - (points() - 1 - i) * size;
    Levels result = steps_[(end - 1) % capacity];
    for (std::size_t step = 2; step <= size; ++step) {
        result = Levels::highest(result, steps_[(end - step) % capacity]);
    }
    return result;
}

}  // namespace orvalo::effect::ui
