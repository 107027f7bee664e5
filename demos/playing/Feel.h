#pragma once

#include <string_view>

#include "demos/playing/Style.h"
#include "demos/theory/Metre.h"
#include "demos/theory/Random.h"

namespace orvalo {

/// How a written note is played: when exactly, and how hard.
class Feel {
  public:
    /// dynamics: as Style has them, for a loop of loopTicks. The style must outlive the feel.
    Feel(const Style& style, std::string_view dynamics, Metre metre, int loopTicks);

    /// The tick at which a note written at a tick sounds: swung, and up to the style's looseness
    /// off. Within the loop.
    int place(int tick, int cellsPerQuarter, Random& random) const;
    /// The velocity 1 to 127 of a note of this strength (1 to 127) at a tick: with the loop's
    /// dynamics, the metre's accents and a hand's unevenness.
    int velocity(int strength, int tick, Random& random) const;

  private:
    const Style& style_;
    std::string_view dynamics_;
    Metre metre_;
    int loopTicks_;
};

/// The strength of the signs X x o g f; any other sign counts as x.
int strengthOf(char sign);

}  // namespace orvalo
