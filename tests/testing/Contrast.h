#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace orvalo::testing {

/// The relative luminance of WCAG 2, of a pixel 0xRRGGBB.
inline double luminance(std::uint32_t pixel) {
    const auto linear = [pixel](unsigned shift) {
        const double share = static_cast<double>((pixel >> shift) & 0xFFU) / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(16) + 0.7152 * linear(8) + 0.0722 * linear(0);
}

/// The contrast of WCAG 2: 1 to 21.
inline double contrast(std::uint32_t one, std::uint32_t other) {
    const auto [low, high] = std::minmax({luminance(one), luminance(other)});
    return (high + 0.05) / (low + 0.05);
}

}  // namespace orvalo::testing
