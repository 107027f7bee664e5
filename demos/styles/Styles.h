#pragma once

#include "demos/playing/Style.h"

namespace orvalo {

// The styles that the catalogue uses. Each returns grooves, patterns, chords and dynamics.

// styles/Rock.cpp
Style rockStyle();
Style punkStyle();
Style metalStyle();
Style bluesShuffleStyle();
Style countryStyle();
// styles/Groove.cpp
Style funkStyle();
Style discoStyle();
Style hipHopStyle();
Style lofiStyle();
Style trapStyle();
Style gospelStyle();
// styles/Electronic.cpp
Style houseStyle();
Style technoStyle();
Style tranceStyle();
Style drumAndBassStyle();
Style synthwaveStyle();
Style chiptuneStyle();
Style ambientStyle();
// styles/Islands.cpp
Style reggaeStyle();
Style dubStyle();
Style skaStyle();
Style calypsoStyle();
Style afrobeatStyle();
// styles/Latin.cpp
Style bossaStyle();
Style sambaStyle();
Style salsaStyle();
Style tangoStyle();
Style latinPercussionStyle();
// styles/Jazz.cpp
Style swingStyle();
Style jazzWaltzStyle();
Style jazzBalladStyle();
Style bigBandStyle();
// styles/Classical.cpp
Style waltzStyle();
Style pianoBalladStyle();
Style quartetStyle();
Style orchestraStyle();
Style organStyle();
Style harpSoloStyle();
Style minimalismStyle();
// styles/Voices.cpp
Style choraleStyle();
Style voiceSoloStyle();
Style doowopStyle();
// styles/Folk.cpp
Style folkStyle();
Style flamencoStyle();
Style jigStyle();
Style reelStyle();
Style balkanStyle();
Style musicBoxStyle();
// styles/World.cpp
Style gamelanStyle();
Style kotoStyle();
Style ragaStyle();
Style taikoStyle();
// styles/Solo.cpp
Style marchingStyle();
Style drumSoloStyle();
Style bassSoloStyle();
Style brassBandStyle();

}  // namespace orvalo
