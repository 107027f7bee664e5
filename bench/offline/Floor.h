#pragma once

#include <filesystem>

namespace orvalo::bench {

/// The lower bound of rendering a file through the effect: the processor seconds of each part
/// alone, on the calling thread.
struct Floor {
    double decoding;
    double effect;

    double sum() const { return decoding + effect; }
};

/// Measures both parts over the whole file.
Floor measureFloor(const std::filesystem::path& file);

}  // namespace orvalo::bench
