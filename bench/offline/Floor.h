#pragma once

#include <filesystem>

namespace orvalo::bench {

/// The least that rendering a file through the effect can cost: each part alone, on the calling
/// thread, in seconds of the processor's time.
struct Floor {
    double decoding;
    double effect;

    double sum() const { return decoding + effect; }
};

/// Measures both parts over the whole file.
Floor measureFloor(const std::filesystem::path& file);

}  // namespace orvalo::bench
