#pragma once

#include <vector>

#include "demos/theory/Chord.h"

namespace orvalo {

/// The range and the shape of a voicing.
struct VoicingRange {
    int low;            ///< lowest MIDI key
    int high;           ///< highest MIDI key, at least two octaves above the lowest
    int voices;         ///< notes in a chord, above 0
    bool open = false;  ///< whether the second voice from above is moved an octave down
};

/// The chord's notes, lowest first, with the least movement from the previous voicing. If previous
/// is empty: closest to the middle of the range.
std::vector<int> voice(const Chord& chord, const VoicingRange& range,
                       const std::vector<int>& previous);

}  // namespace orvalo
