#pragma once

#include <string_view>
#include <vector>

#include "demos/theory/Chord.h"
#include "demos/theory/Metre.h"
#include "demos/theory/Scale.h"

namespace orvalo {

/// Which chord sounds when. The progression goes round until the loop is full, and the loop itself
/// goes round, so that the chord after the last is the first.
class Harmony {
  public:
    /// progression: bars apart by spaces, chords within a bar by commas (equal shares of the bar),
    /// each as parseChord reads it; not empty. Throws std::invalid_argument for a bad chord.
    Harmony(std::string_view progression, const Scale& scale, Metre metre, int bars);

    /// The chord at a tick, which may lie beyond the loop's end or, as -1, before its start.
    const Chord& at(int tick) const;
    /// The chord that follows the one at the tick (the same where it lasts the whole loop).
    const Chord& after(int tick) const;
    /// Ticks from the tick to the next change, up to the loop's length.
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
