#pragma once

#include <filesystem>

namespace orvalo::bench {

/// Makes an m4a file of `seconds` seconds, 48 kHz stereo, with the program ffmpeg: the
/// demonstration files of the stage one after the other, or synthetic music without them. Throws
/// std::runtime_error when ffmpeg fails.
void makeMusic(const std::filesystem::path& file, int seconds);

}  // namespace orvalo::bench
