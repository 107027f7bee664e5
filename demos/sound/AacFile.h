#pragma once

#include <filesystem>

#include "demos/sound/StereoSound.h"

namespace orvalo {

/// Writes a loop as AAC-LC in MP4 (libavcodec), the same bytes for the same loop. The media header
/// states the length exactly: priming plus the loop's frames; the edit list cuts the priming. The
/// coder sees the loop's own start behind its end, so that the last frames are coded as those of a
/// sound that goes on. Throws std::runtime_error, naming the file and the reason; a file half
/// written is removed.
void writeAac(const StereoSound& loop, int rate, const std::filesystem::path& file);

}  // namespace orvalo
