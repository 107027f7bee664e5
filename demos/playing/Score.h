#pragma once

#include <vector>

namespace orvalo {

/// One player of the loop.
struct Part {
    int program;  ///< General MIDI program 0 to 127, or the drum kit's program
    bool drums;
    double loudness;  ///< LUFS in the mix, before the mix is levelled
    int pan;          ///< 0 left, 64 middle, 127 right
    int reverb;       ///< 0 to 127
    int chorus;       ///< 0 to 127
};

struct Note {
    int part;
    int tick;      ///< within the loop
    int length;    ///< ticks, above 0; may sound beyond the loop's end
    int key;       ///< MIDI key 0 to 127
    int velocity;  ///< 1 to 127
};

/// A change of a part's expression, 0 to 127.
struct Swell {
    int part;
    int tick;
    int expression;
};

/// The music of one pass.
struct Score {
    double quarterSeconds = 0.5;
    int loopTicks = 0;
    std::vector<Part> parts;
    std::vector<Note> notes;
    std::vector<Swell> swells;
};

}  // namespace orvalo
