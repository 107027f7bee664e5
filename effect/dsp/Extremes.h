#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>

namespace orvalo::effect {

// The order of numbers of at least 0 is that of their bits. Running extremes of whole numbers
// become vector code, those of floating-point numbers do not.

/// The number, or 0 if it is negative.
inline float positivePart(float value) {
    const auto bits = std::bit_cast<std::int32_t>(value);
    return std::bit_cast<float>(bits & ~(bits >> 31));
}

/// The smaller of two numbers of at least 0.
inline float smaller(float one, float other) {
    return std::bit_cast<float>(
        std::min(std::bit_cast<std::int32_t>(one), std::bit_cast<std::int32_t>(other)));
}

/// The highest of `start` and the values, all at least 0.
inline float highest(const float* values, std::uint32_t count, float start) {
    auto result = std::bit_cast<std::int32_t>(start);
    for (std::uint32_t i = 0; i < count; ++i) {
        result = std::max(result, std::bit_cast<std::int32_t>(values[i]));
    }
    return std::bit_cast<float>(result);
}

/// Copies count values through `of`, and returns the highest absolute value of the copies.
template <typename Of>
float copyHighest(const float* from, float* to, std::uint32_t count, const Of& of) {
    constexpr std::int32_t withoutSign = 0x7FFFFFFF;
    std::int32_t result = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        to[i] = of(from[i]);
        result = std::max(result, std::bit_cast<std::int32_t>(to[i]) & withoutSign);
    }
    return std::bit_cast<float>(result);
}

/// The lowest of the values, all at least 0; infinite without values.
inline float lowest(const float* values, std::uint32_t count) {
    auto result = std::bit_cast<std::int32_t>(std::numeric_limits<float>::infinity());
    for (std::uint32_t i = 0; i < count; ++i) {
        result = std::min(result, std::bit_cast<std::int32_t>(values[i]));
    }
    return std::bit_cast<float>(result);
}

}  // namespace orvalo::effect
