#pragma once

#include "demos/playing/Session.h"

namespace orvalo {

// Each function writes its layer into the session's score, for the whole loop.

void playChords(const Session& session);
void playBass(const Session& session);
void playOstinato(const Session& session);
/// Chooses the rhythms from all patterns of the layer.
void playMelody(const Session& session);

/// What the drum player works with. The references outlive the session.
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
