#pragma once

#include <filesystem>
#include <string>

#include "bench/measuring/Child.h"

namespace orvalo::bench {

/// Commands that render the file through an effect into a wav of 32-bit floats on /dev/null. The
/// GStreamer one takes Orvalo.
Command ffmpegJob(const std::filesystem::path& file, const std::string& uri);
Command gstreamerJob(const std::filesystem::path& file);
/// By orvalo-play, with the effect in its service or in the program.
Command playJob(const std::filesystem::path& file, const std::string& uri, bool isInProcess);

}  // namespace orvalo::bench
