#pragma once

#include "demos/playing/Session.h"

namespace orvalo {

// Each writes its layer into the session's score for the whole loop.

void playChords(const Session& session);
void playBass(const Session& session);
void playOstinato(const Session& session);
/// patterns: the layer's, of which the melody draws its rhythms.
void playMelody(const Session& session);

/// A drummer reads a groove instead of a layer's pattern.
struct DrumSession {
    Score& score;
    int part;
    const Groove& groove;
    int cells;
    Metre metre;
    int bars;
    const Feel& feel;
    Random& random;
};
void playDrums(const DrumSession& session);

}  // namespace orvalo
