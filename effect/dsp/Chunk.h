#pragma once

#include <array>
#include <cstdint>

namespace orvalo::effect {

/// Frames that are processed at once: small enough for the L1 cache, large enough for vector code.
inline constexpr std::uint32_t chunkFrames = 128;

/// One value per frame of a chunk.
struct alignas(64) Chunk : std::array<float, chunkFrames> {};

}  // namespace orvalo::effect
