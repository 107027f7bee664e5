#include "effect/dsp/BeatGenerator.h"

#include <algorithm>
#include <cmath>

namespace orvalo::effect {

void BeatGenerator::configure(const Settings& settings) {
    if (settings == settings_) {
        return;
    }
    const Settings old = settings_;
    settings_ = settings;
    step_ = stepOf(settings.division);
    const bool isStarting = settings.isOn && !old.isOn;
    if (!hasHostTime_) {
        anchorAt(isStarting ? 0.0 : positionNow(), ownPerFrame());
    }
    if (isStarting || settings.division != old.division || settings.offset != old.offset) {
        findNext();
    }
    isDown_ = isDown_ && settings.isOn;
    takeEdges();
}

void BeatGenerator::reset() {
    hasHostTime_ = false;
    anchorAt(0.0, ownPerFrame());
    findNext();
    takeEdges();
}

void BeatGenerator::setHostTime(std::optional<double> quarters, double quartersPerSecond) {
    const bool wasRunning = hasHostTime_ && perFrame_ > 0.0;
    const double expected = positionNow();
    const double position = quarters.value_or(expected);
    hasHostTime_ = true;
    anchorAt(position, std::max(0.0, quartersPerSecond / sampleRate_));
    // A host that repeats its time rounds it: a grid point that was just reached must not come
    // again. A larger difference is a jump.
    const bool isJump = std::abs(position - expected) > 0.125 * step_;
    if (!wasRunning || perFrame_ == 0.0 || isJump) {
        findNext();
    }
    takeEdges();
}

std::uint32_t BeatGenerator::framesToEdge() const {
    if (!isRunning()) {
        return never;
    }
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(distance(), never));
}

void BeatGenerator::advance(std::uint32_t frames) {
    frame_ += frames;
    takeEdges();
}

void BeatGenerator::anchorAt(double quarters, double perFrame) {
    anchor_ = quarters;
    perFrame_ = perFrame;
    frame_ = 0;
}

void BeatGenerator::findNext() {
    constexpr double tolerance = 1e-6;
    const double steps = positionNow() / step_ - settings_.offset;
    next_ = static_cast<std::int64_t>(std::ceil(steps - tolerance));
    isDown_ = false;
}

void BeatGenerator::takeEdges() {
    while (isRunning() && distance() == 0) {
        isDown_ = !isDown_;
        next_ += isDown_ ? 1 : 0;
    }
}

std::uint64_t BeatGenerator::distance() const {
    const double steps =
        settings_.offset +
        (isDown_ ? static_cast<double>(next_ - 1) + settings_.length : static_cast<double>(next_));
    // Far beyond any block, and still exact as a double.
    constexpr double farthest = 1e15;
    const double edge = std::round((steps * step_ - anchor_) / perFrame_);
    const double left = std::clamp(edge - static_cast<double>(frame_), 0.0, farthest);
    return static_cast<std::uint64_t>(left);
}

}  // namespace orvalo::effect
