#pragma once

#include <filesystem>

namespace orvalo::bench {

/// Makes a file of so many seconds of m4a, 48 kHz stereo, with the program ffmpeg: the stage's
/// demonstration music piece after piece, or bursts of noise over chords where there is none.
/// Throws std::runtime_error when that fails.
void makeMusic(const std::filesystem::path& file, int seconds);

}  // namespace orvalo::bench
