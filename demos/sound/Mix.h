#pragma once

#include <cstddef>
#include <filesystem>

#include "demos/score/Score.h"
#include "demos/sound/StereoSound.h"

namespace orvalo {

/// Plays a score's parts and mixes them to a loop of so many frames, each part at the loudness that
/// it asks for. Throws as render does.
StereoSound mix(const Score& score, const std::filesystem::path& soundFont, int rate,
                std::size_t frames);

/// Turns the right side over where the two sides would cancel each other in mono, as they do in
/// some of a SoundFont's synthesiser sounds.
void matchSides(StereoSound& sound);

}  // namespace orvalo
