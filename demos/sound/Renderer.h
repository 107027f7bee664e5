#pragma once

#include <cstddef>
#include <filesystem>

#include "demos/playing/Score.h"
#include "demos/sound/StereoSound.h"

namespace orvalo {

/// Renders one part of a score with FluidSynth and a General MIDI SoundFont: one pass, and then
/// until all notes have decayed. Notes start at the nearest multiple of 64 frames. Throws
/// std::runtime_error when the SoundFont cannot be read or lacks the program.
StereoSound render(const Score& score, std::size_t part, const std::filesystem::path& soundFont,
                   int rate);

}  // namespace orvalo
