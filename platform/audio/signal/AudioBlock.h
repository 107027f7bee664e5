#pragma once

#include <cstdint>

namespace orvalo {

/// A view of planar 32-bit float audio: channelCount pointers to frameCount samples each. Owns
/// nothing. Full scale is ±1.
struct AudioBlock {
    float* const* channels = nullptr;
    std::uint32_t channelCount = 0;
    std::uint32_t frameCount = 0;
};

/// The maximum number of channels of a node.
constexpr std::uint32_t kMaximumChannels = 32;

/// The maximum number of frames that a node renders in one call; larger quanta are sliced.
constexpr std::uint32_t kMaximumFramesToRender = 4096;

}  // namespace orvalo
