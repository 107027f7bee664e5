#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/audio/file/LocalFile.h"

namespace orvalo {

/// The times of one track, as the header of an MP4 or QuickTime file states them.
struct MovieHeader {
    struct Edit {
        std::int64_t duration = 0;    ///< In movie time.
        std::int64_t mediaStart = 0;  ///< In media time; -1 for silence.
    };

    std::uint32_t movieTimeScale = 0;  ///< Units a second, above 0.
    std::uint32_t mediaTimeScale = 0;  ///< Units a second, above 0.
    std::int64_t mediaDuration = 0;    ///< In media time; 0 when unknown.
    std::vector<Edit> edits;           ///< Empty: the whole track plays.
};

/// Reads the header of the track with this identifier (ISO/IEC 14496-12). Absent when it is missing
/// or damaged.
std::optional<MovieHeader> readMovieHeader(const LocalFile& file, std::uint32_t track);

}  // namespace orvalo
