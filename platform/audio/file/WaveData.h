#pragma once

#include <cstdint>
#include <optional>

#include "platform/audio/file/LocalFile.h"

namespace orvalo {

/// How many bytes behind the end of the file the data chunk of a wave file (RIFF, RF64, Sony's W64)
/// states that it reaches: 0 when all is there. Nothing when the file is no such file or leaves the
/// size open, as a recorder does that writes to a stream (0, or all bits set).
std::optional<std::uint64_t> missingWaveBytes(const LocalFile& file);

}  // namespace orvalo
