#pragma once

#include <cstddef>
#include <filesystem>

#include "demos/playing/Score.h"
#include "demos/sound/StereoSound.h"

namespace orvalo {

/// Plays the parts of a score and mixes them into a loop of `frames` frames, each part at its
/// stated loudness. Throws like render().
StereoSound mix(const Score& score, const std::filesystem::path& soundFont, int rate,
                std::size_t frames);

/// Makes a loop of a sound that rings on beyond the loop's end: adds what follows the end to the
/// start, repeatedly if needed, as it would sound in the following passes. frames > 0.
StereoSound fold(const StereoSound& sound, std::size_t frames);

/// Inverts the right side if the two sides would cancel each other in mono, as in some synthesiser
/// sounds of a SoundFont.
void matchSides(StereoSound& sound);

}  // namespace orvalo
