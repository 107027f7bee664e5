#pragma once

#include <cstdint>
#include <optional>

#include "platform/audio/file/LocalFile.h"

namespace orvalo {

/// The granule position of the last page of a logical stream in an Ogg file (RFC 3533). stream
/// counts from 0, in the order of the first pages. Absent when the file does not end with a whole
/// page of the stream that is marked as its last.
std::optional<std::int64_t> oggLastGranule(const LocalFile& file, int stream);

}  // namespace orvalo
