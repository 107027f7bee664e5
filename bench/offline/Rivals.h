#pragma once

#include <filesystem>
#include <string>

#include "bench/measuring/Child.h"

namespace orvalo::bench {

/// Commands that render the file through the effect into a wav of 32-bit floats on /dev/null.
Command ffmpegJob(const std::filesystem::path& file);
Command gstreamerJob(const std::filesystem::path& file);

/// Copies the stage's effect into the folder without port groups and returns the LV2_PATH for it:
/// GStreamer treats each control port of a group as an audio channel.
std::string makeEffectForGStreamer(const std::filesystem::path& folder);

/// The same by orvalo-play.
Command playJob(const std::filesystem::path& file);

}  // namespace orvalo::bench
