#pragma once

#include <cstddef>
#include <filesystem>

#include "demos/score/Score.h"
#include "demos/sound/StereoSound.h"

namespace orvalo {

/// Plays one part of a score on a General MIDI SoundFont (FluidSynth): one pass from silence, and
/// on until all has rung out. Notes begin at the synthesiser's block of 64 frames nearest to their
/// time. Throws std::runtime_error, with a reason, when the SoundFont cannot be read or lacks the
/// program.
StereoSound render(const Score& score, std::size_t part, const std::filesystem::path& soundFont,
                   int rate);

}  // namespace orvalo
