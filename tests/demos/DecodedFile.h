#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace orvalo::testing {

/// An AAC file as libavformat and libavcodec read it, without a reader of ours.
struct DecodedFile {
    int rate = 0;
    int channels = 0;
    std::int64_t firstTime = 0;     ///< presentation time of the first packet, in frames
    std::int64_t headerFrames = 0;  ///< length that the media header states
    std::vector<float> left;        ///< without the priming and the padding
    std::vector<float> right;
};

/// Throws std::runtime_error, naming the file, when it cannot be read to its end without error.
DecodedFile decode(const std::filesystem::path& file);

}  // namespace orvalo::testing
