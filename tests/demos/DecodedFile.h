#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace orvalo::testing {

/// An AAC file decoded with libavformat and libavcodec, without our own file reader.
struct DecodedFile {
    int rate = 0;
    int channels = 0;
    std::int64_t firstTime = 0;     ///< presentation time of the first packet, in frames
    std::int64_t headerFrames = 0;  ///< length that the media header states
    std::vector<float> left;        ///< without the priming and the padding
    std::vector<float> right;
};

/// Throws std::runtime_error with the file's name when it cannot be decoded to its end.
DecodedFile decode(const std::filesystem::path& file);

}  // namespace orvalo::testing
