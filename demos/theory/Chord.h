#pragma once

#include <string_view>
#include <vector>

#include "demos/theory/Scale.h"

namespace orvalo {

/// A chord as pitch classes, without octaves.
struct Chord {
    int root;                    ///< pitch class, 0 to 11
    std::vector<int> intervals;  ///< semitones above the root, ascending, the first 0

    /// Whether the key is one of the chord's notes in any octave.
    bool contains(int key) const;
    /// Semitones above the root of the third, or of the note in its place.
    int third() const;
    int fifth() const;
    /// The topmost of root, third, fifth and seventh.
    int seventh() const;
    bool operator==(const Chord&) const = default;
};

/// Reads a chord as a degree of a scale of seven notes: [b|#] degree 1-7 [: quality]. With b or #,
/// the degree is that of the major scale, lowered or raised by a semitone, and needs a fixed
/// quality. Without a quality the chord is a triad of the scale; "7" and "9" also consist of scale
/// notes. Fixed qualities: M m o (triads), M7 m7 D h o7 (sevenths: D dominant, h half diminished),
/// M9 m9 D9 6 m6 s (sus4) p (root and fifth). Throws std::invalid_argument with the text for
/// anything else.
Chord parseChord(std::string_view text, const Scale& scale);

}  // namespace orvalo
