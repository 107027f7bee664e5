#pragma once

#include <filesystem>
#include <string>

#include "demos/sound/StereoSound.h"

namespace orvalo {

/// Writes a loop as AAC-LC in MP4. The same loop gives the same bytes. The media header states the
/// exact length: the priming (one block of 1024 frames) plus the loop's frames; the edit list cuts
/// the priming. The encoder is fed the loop's end before its start and the start after its end, so
/// that the seam between passes has no more coding noise than other places. Throws
/// std::runtime_error with the file and the reason, and removes the incomplete file.
/// title: the file's title tag.
void writeAac(const StereoSound& loop, int rate, const std::string& title,
              const std::filesystem::path& file);

}  // namespace orvalo
