#pragma once

#include "effect/dsp/Chunk.h"

namespace orvalo::effect {

/// The frames of a chunk: left and right, or mid and side.
struct StereoChunk {
    Chunk left;
    Chunk right;

    /// Mid is half the sum, side half the difference; fromMidSide() reverses it.
    void toMidSide(std::uint32_t count) {
        for (std::uint32_t i = 0; i < count; ++i) {
            const float mid = 0.5F * (left[i] + right[i]);
            right[i] = 0.5F * (left[i] - right[i]);
            left[i] = mid;
        }
    }

    void fromMidSide(std::uint32_t count) {
        for (std::uint32_t i = 0; i < count; ++i) {
            const float mid = left[i];
            left[i] = mid + right[i];
            right[i] = mid - right[i];
        }
    }

    void multiply(const Chunk& leftGain, const Chunk& rightGain, std::uint32_t count) {
        for (std::uint32_t i = 0; i < count; ++i) {
            left[i] *= leftGain[i];
            right[i] *= rightGain[i];
        }
    }
};

}  // namespace orvalo::effect
