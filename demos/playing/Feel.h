#pragma once

#include <string_view>

#include "demos/playing/Style.h"
#include "demos/theory/Metre.h"
#include "demos/theory/Random.h"

namespace orvalo {

/// Turns written notes into played ones: exact time and velocity.
class Feel {
  public:
    /// dynamics: see Style. The style must outlive the feel.
    Feel(const Style& style, std::string_view dynamics, Metre metre, int loopTicks);

    /// The tick at which a note written at `tick` sounds, with swing and up to Style::loose ticks
    /// early or late. Within the loop.
    int place(int tick, int cellsPerQuarter, Random& random) const;
    /// The velocity, 1 to 127, of a note at a tick, with the dynamics, the accents of the metre and
    /// a random deviation. strength: 1 to 127.
    int velocity(int strength, int tick, Random& random) const;

  private:
    const Style& style_;
    std::string_view dynamics_;
    Metre metre_;
    int loopTicks_;
};

/// The strength of the pattern signs X x o f g ?; any other sign counts as x.
int strengthOf(char sign);

}  // namespace orvalo
