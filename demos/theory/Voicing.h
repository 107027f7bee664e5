#pragma once

#include <vector>

#include "demos/theory/Chord.h"

namespace orvalo {

/// Where chords lie on the keyboard.
struct VoicingRange {
    int low;            ///< lowest key
    int high;           ///< highest key, at least two octaves above the lowest
    int voices;         ///< notes in a chord, above 0
    bool open = false;  ///< the second voice from above lies an octave lower
};

/// The chord's notes, lowest first, placed so that the voices move as little as they can from the
/// previous voicing (empty: as near as they can to the middle of the range).
std::vector<int> voice(const Chord& chord, const VoicingRange& range,
                       const std::vector<int>& previous);

}  // namespace orvalo
