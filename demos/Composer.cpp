#include "demos/Composer.h"

#include <cstddef>

#include "demos/playing/Arranger.h"
#include "demos/sound/Loudness.h"
#include "demos/sound/Mix.h"

namespace orvalo {

namespace {

/// -4.4 dB: coding raises the peaks of these pieces by up to 2.3 dB, and the files must stay below
/// -1 dB true peak.
constexpr float ceiling = 0.6F;

}  // namespace

StereoSound compose(const Piece& piece, const std::filesystem::path& soundFont) {
    StereoSound loop =
        mix(arrange(piece), soundFont, pieceRate, static_cast<std::size_t>(piece.frames()));
    normalise(loop, pieceRate, targetLoudness, ceiling);
    return loop;
}

}  // namespace orvalo
