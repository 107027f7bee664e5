#pragma once

#include <array>
#include <cstddef>

#include "effect/ui/model/Levels.h"

namespace orvalo::effect::ui {

/// The levels of the last seconds, in equal steps of time. A step shows the highest of all that
/// was heard in it, so that no peak is missed however rarely it is looked at.
class History {
  public:
    static constexpr std::size_t steps = 240;
    static constexpr double secondsPerStep = 0.025;
    static constexpr double seconds = static_cast<double>(steps) * secondsPerStep;

    /// Takes the levels that hold from `now` on, in seconds of a clock that never goes back. Closes
    /// the steps before that, as advance() does; true when what is shown has changed.
    bool take(const Levels& levels, double now);

    /// Closes the steps that have passed until `now`; true when what is shown has changed.
    bool advance(double now);

    /// The steps from the oldest, 0, to the newest.
    const Levels& step(std::size_t i) const { return steps_[(first_ + i) % steps]; }

  private:
    void close();

    std::array<Levels, steps> steps_{};
    std::size_t first_ = 0;
    Levels current_;
    Levels highest_;
    double end_ = 0.0;
    bool started_ = false;
    // How many of the newest steps are alike: with all of them, moving on shows nothing new.
    std::size_t alike_ = steps;
};

}  // namespace orvalo::effect::ui
