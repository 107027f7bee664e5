#pragma once

#include <cstdint>

namespace orvalo {

/// How a new effect will render first, as far as that is known, so that it is instantiated once.
struct ExpectedRendering {
    double sampleRate = 48000.0;   ///< Hz; the rate of the demonstration files.
    std::uint32_t frameCount = 0;  ///< Of each quantum; 0 where quanta differ.
};

}  // namespace orvalo
