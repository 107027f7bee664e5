#include "demos/Composer.h"

#include <cstddef>

#include "demos/playing/Arranger.h"
#include "demos/sound/Loudness.h"
#include "demos/sound/Mix.h"

namespace orvalo {

namespace {

/// -3 dB: what the coding adds to a peak stays below -1 dB true peak.
constexpr float ceiling = 0.7079F;

}  // namespace

StereoSound compose(const Piece& piece, const std::filesystem::path& soundFont) {
    StereoSound loop =
        mix(arrange(piece), soundFont, pieceRate, static_cast<std::size_t>(piece.frames()));
    normalise(loop, pieceRate, targetLoudness, ceiling);
    return loop;
}

}  // namespace orvalo
