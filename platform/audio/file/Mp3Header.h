#pragma once

#include <cstdint>
#include <optional>

#include "platform/audio/file/LocalFile.h"

namespace orvalo {

/// The Xing or Info header in the first frame of an MP3 file, with LAME's extension.
struct Mp3Header {
    std::int64_t start = 0;          ///< Where the header's frame begins in the file.
    std::int64_t bytes = 0;          ///< Bytes of all frames from there, above 0.
    std::int64_t decodedFrames = 0;  ///< The decoded length, with priming and padding.
    std::int64_t priming = 0;        ///< Decoded frames to drop at the start.
    std::int64_t padding = 0;        ///< Decoded frames to drop at the end.
};

/// Absent when there is no such header or it lacks one of these numbers.
std::optional<Mp3Header> readMp3Header(const LocalFile& file);

}  // namespace orvalo
