#pragma once

#include <cstdint>
#include <optional>

#include "platform/audio/file/LocalFile.h"

namespace orvalo {

/// What the first frame of an MP3 file states about the others, where an encoder has put its note
/// there ("Xing" or "Info", with LAME's extension).
struct Mp3Header {
    std::int64_t start = 0;          ///< Where the note's own frame begins in the file.
    std::int64_t bytes = 0;          ///< How many bytes of frames follow from there, above 0.
    std::int64_t decodedFrames = 0;  ///< What the frames decode to, priming and padding included.
    std::int64_t priming = 0;        ///< How many of these to drop at the start,
    std::int64_t padding = 0;        ///< and at the end.
};

/// Nothing when there is no note, or not with all of this.
std::optional<Mp3Header> readMp3Header(const LocalFile& file);

}  // namespace orvalo
