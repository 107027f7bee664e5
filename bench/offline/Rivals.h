#pragma once

#include <filesystem>
#include <string>

#include "bench/measuring/Child.h"

namespace orvalo::bench {

/// The same job in other programs: the file through the effect into a wav of 32-bit floats that
/// nobody keeps.
Command ffmpegJob(const std::filesystem::path& file);
Command gstreamerJob(const std::filesystem::path& file);

/// Puts the stage's effect into the folder in a form that GStreamer can use, and returns the
/// LV2_PATH for it: GStreamer takes every control port that is in a port group for an audio channel
/// of that group, so that the parameters leave their groups here.
std::string makeEffectForGStreamer(const std::filesystem::path& folder);

/// Ours.
Command playJob(const std::filesystem::path& file);

}  // namespace orvalo::bench
