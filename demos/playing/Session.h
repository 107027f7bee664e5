#pragma once

#include <vector>

#include "demos/playing/Feel.h"
#include "demos/playing/Style.h"
#include "demos/score/Score.h"
#include "demos/theory/Harmony.h"
#include "demos/theory/Metre.h"
#include "demos/theory/Random.h"
#include "demos/theory/Scale.h"

namespace orvalo {

/// What one player of a loop works with. The references outlive the session.
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

    /// True where the layer plays at the tick.
    bool plays(int tick) const;
    /// Writes one note: a written place, length and strength become played ones. late: ticks by
    /// which it follows the others of its chord.
    void write(int key, int tick, int length, int strength, int late = 0) const;
};

}  // namespace orvalo
