#pragma once

#include <filesystem>

#include "demos/score/Score.h"
#include "demos/sound/StereoSound.h"

namespace orvalo {

/// Plays a score on a General MIDI SoundFont (FluidSynth): one pass from silence, and on until all
/// has rung out. Notes begin at the synthesiser's block of 64 frames that holds their time. Throws
/// std::runtime_error, naming the file, when the SoundFont cannot be read.
StereoSound render(const Score& score, const std::filesystem::path& soundFont, int rate);

}  // namespace orvalo
