#pragma once

#include <cstdint>
#include <optional>

#include "platform/audio/file/LocalFile.h"

namespace orvalo {

/// By how many bytes the file is too short for the stated size of its data chunk (RIFF, RF64 or
/// Sony's W64); 0 when it is complete. Absent for other kinds of file, and when the size is unknown
/// (0 or all bits set), as in a recorded stream.
std::optional<std::uint64_t> missingWaveBytes(const LocalFile& file);

}  // namespace orvalo
