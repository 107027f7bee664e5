#pragma once

#include <string_view>
#include <vector>

#include "demos/theory/Scale.h"

namespace orvalo {

/// A chord without a place on the keyboard.
struct Chord {
    int root;                    ///< pitch class, 0 to 11
    std::vector<int> intervals;  ///< semitones above the root, ascending, the first 0

    /// True when the key sounds one of the chord's notes in any octave.
    bool contains(int key) const;
    /// The semitones above the root of the third, or the nearest thing that the chord has to one.
    int third() const;
    int fifth() const;
    /// The topmost of root, third, fifth and seventh.
    int seventh() const;
    bool operator==(const Chord&) const = default;
};

/// Reads a chord by its place in a scale of seven notes: [b|#] degree 1-7 [: quality]. With b or #
/// the degree is one of the major scale, lowered or raised by a semitone, and needs one of the
/// fixed qualities. Without a quality the triad lies in the scale, and so do "7" and "9"; the
/// others are fixed: M m o (triads) M7 m7 D h o7 (sevenths, D the dominant, h half diminished) M9
/// m9 D9 6 m6 s (sus4) p (fifth alone). Throws std::invalid_argument, naming the text, for anything
/// else.
Chord parseChord(std::string_view text, const Scale& scale);

}  // namespace orvalo
