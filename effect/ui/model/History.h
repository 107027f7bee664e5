#pragma once

#include <array>
#include <cstddef>

#include "effect/dsp/LevelMeter.h"

namespace orvalo::effect::ui {

/// The effect's last levels, in dB.
struct Levels {
    static constexpr float lowest = LevelMeter::lowest;

    float input = lowest;
    float output = lowest;
    float reduction = 0.0F;
    float ducking = 0.0F;

    /// The higher of each.
    static Levels highest(const Levels& one, const Levels& other);

    bool operator==(const Levels&) const = default;
};

/// The levels of the last seconds, in equal time steps. A step holds the highest levels within it,
/// so that no peak is missed. What is visible of it is a span of as many points as fit well into a
/// window; a point holds the highest levels of one or more steps.
class History {
  public:
    static constexpr double secondsPerStep = 0.025;
    /// The spans to choose from, in seconds.
    static constexpr std::array<int, 4> spans{3, 6, 12, 30};
    static constexpr std::size_t standardSpan = 1;

    /// Calls advance(), then records the levels from `now` on, in seconds of a monotonic clock.
    /// Returns what advance() returns.
    bool record(const Levels& levels, double now);

    /// Closes the steps that ended before `now`. Returns whether the visible points have changed.
    bool advance(double now);

    /// Lets the time until `now` pass without steps.
    void skip(double now);

    /// index: in spans.
    void setSpan(std::size_t index) { span_ = index; }
    std::size_t span() const { return span_; }

    std::size_t points() const;
    /// Point 0 is the oldest.
    Levels point(std::size_t i) const;

  private:
    static constexpr std::size_t mostPoints = 240;
    static constexpr std::size_t mostSteps = 1200;
    static constexpr std::size_t mostStepsPerPoint = mostSteps / mostPoints;
    /// With room for the steps of a point that is not complete.
    static constexpr std::size_t capacity = mostSteps + mostStepsPerPoint;

    std::size_t visibleSteps() const;
    std::size_t stepsPerPoint() const;
    void close();

    std::array<Levels, capacity> steps_{};
    /// The number of closed steps. Starts as if the time before had been silent.
    std::size_t closed_ = capacity;
    std::size_t span_ = standardSpan;
    Levels current_;
    Levels highest_;
    double end_ = 0.0;
    bool started_ = false;
    // How many of the newest steps are equal. When all are, another equal one changes nothing.
    std::size_t equalSteps_ = capacity;
};

}  // namespace orvalo::effect::ui
