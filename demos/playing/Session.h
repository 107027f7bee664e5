#pragma once

#include "demos/playing/Feel.h"
#include "demos/playing/Score.h"
#include "demos/playing/Style.h"
#include "demos/theory/Harmony.h"
#include "demos/theory/Metre.h"
#include "demos/theory/Random.h"
#include "demos/theory/Scale.h"

namespace orvalo {

/// What one player works with. The references outlive the session.
struct Session {
    Score& score;
    int part;  ///< the player's part in the score
    const Layer& layer;
    int cells;  ///< cells of the layer's patterns in a quarter note
    std::string_view pattern;
    int low;  ///< the instrument's range in MIDI keys
    int high;
    Metre metre;
    int bars;
    const Scale& scale;
    const Harmony& harmony;
    const Feel& feel;
    Random& random;

    /// Whether the layer plays at the tick.
    bool plays(int tick) const;
    /// Adds a note to the score, with the session's feel applied. late: delay in ticks within a
    /// strummed chord.
    void write(int key, int tick, int length, int strength, int late = 0) const;
};

}  // namespace orvalo
