#pragma once

#include <cstdint>
#include <optional>

#include "platform/audio/file/LocalFile.h"

namespace orvalo {

/// The granule position on the last page of the Ogg file's logical stream with this number, counted
/// from 0 in the order of their first pages (RFC 3533); nothing when that page, whole and marked as
/// the last, is not at the file's end.
std::optional<std::int64_t> oggLastGranule(const LocalFile& file, int stream);

}  // namespace orvalo
