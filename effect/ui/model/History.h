#pragma once

#include <array>
#include <cstddef>

namespace orvalo::effect::ui {

/// The effect's last levels, in dB.
struct Levels {
    /// The lowest value of the effect's level meters.
    static constexpr float lowest = -90.0F;

    float input = lowest;
    float output = lowest;
    float reduction = 0.0F;
    float ducking = 0.0F;

    bool operator==(const Levels&) const = default;
};

/// The levels of the last seconds, in equal time steps. A step holds the highest levels within it,
/// so that no peak is missed.
class History {
  public:
    static constexpr std::size_t steps = 240;
    static constexpr double secondsPerStep = 0.025;
    static constexpr double seconds = static_cast<double>(steps) * secondsPerStep;

    /// Records the levels from `now` on, in seconds of a monotonic clock, after advance(). Returns
    /// what advance() returns.
    bool record(const Levels& levels, double now);

    /// Closes the steps that ended before `now`. Returns whether the visible steps have changed.
    bool advance(double now);

    /// Step 0 is the oldest.
    const Levels& step(std::size_t i) const { return steps_[(first_ + i) % steps]; }

  private:
    void close();

    std::array<Levels, steps> steps_{};
    std::size_t first_ = 0;
    Levels current_;
    Levels highest_;
    double end_ = 0.0;
    bool started_ = false;
    // How many of the newest steps are equal. When all are, another equal one changes nothing.
    std::size_t equalSteps_ = steps;
};

}  // namespace orvalo::effect::ui
