#pragma once

#include <array>
#include <cstdint>

namespace orvalo::effect {

/// Frames that the processor works on at once: few enough for the first cache, enough for vectors.
inline constexpr std::uint32_t chunkFrames = 64;

/// One value for each frame of a chunk.
struct alignas(64) Chunk : std::array<float, chunkFrames> {};

}  // namespace orvalo::effect
