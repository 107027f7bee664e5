#pragma once

#include <filesystem>

#include "demos/sound/StereoSound.h"

namespace orvalo {

/// Writes a loop as AAC-LC in MP4 (libavcodec), the same bytes for the same loop. The media header
/// states the length exactly: priming (one block of 1024) plus the loop's frames; the edit list
/// cuts the priming. The coder hears the loop's own end before its start and the start behind its
/// end, so that a pass joins the next as well as one moment of it joins another. Throws
/// std::runtime_error, naming the file and the reason; a file half written is removed.
void writeAac(const StereoSound& loop, int rate, const std::filesystem::path& file);

}  // namespace orvalo
