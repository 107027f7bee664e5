#pragma once

#include <string_view>
#include <vector>

#include "demos/theory/Chord.h"
#include "demos/theory/Metre.h"
#include "demos/theory/Scale.h"

namespace orvalo {

/// The chords of a loop. The progression repeats until the loop is full; the chord after the last
/// one is the first.
class Harmony {
  public:
    /// progression: bars separated by spaces, chords of a bar by commas (equal shares of the bar),
    /// in the notation of parseChord(); not empty. Throws std::invalid_argument for an invalid
    /// chord.
    Harmony(std::string_view progression, const Scale& scale, Metre metre, int bars);

    /// The chord at a tick, which may lie outside the loop.
    const Chord& at(int tick) const;
    /// The chord after the one at the tick; the same one if it lasts the whole loop.
    const Chord& after(int tick) const;
    /// Ticks from the tick to the next chord or the end of the loop.
    int ticksToChange(int tick) const;

  private:
    std::size_t indexAt(int tick) const;

    struct Span {
        int start;
        Chord chord;
    };
    std::vector<Span> spans_;
    int loopTicks_;
};

}  // namespace orvalo
