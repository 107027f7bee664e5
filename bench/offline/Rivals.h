#pragma once

#include <filesystem>
#include <string>

#include "bench/measuring/Child.h"

namespace orvalo::bench {

/// Commands that render the file through an effect into a wav of 32-bit floats on /dev/null. The
/// GStreamer one takes Orvalo.
Command ffmpegJob(const std::filesystem::path& file, const std::string& uri);
Command gstreamerJob(const std::filesystem::path& file);

/// Copies the stage's effect into the folder without port groups and returns the LV2_PATH for it:
/// GStreamer treats each control port of a group as an audio channel.
std::string makeEffectForGStreamer(const std::filesystem::path& folder);

/// Makes a bundle in the folder that registers the effect for orvalo-play, and returns the LV2_PATH
/// for it.
std::string registerEffect(const std::filesystem::path& folder, const std::string& uri);

/// The same by orvalo-play, with the effect in its service or in the program.
Command playJob(const std::filesystem::path& file, bool isInProcess);

}  // namespace orvalo::bench
