#pragma once

#include <cstdint>

namespace orvalo {

/// What a control input may be set to, as its plug-in's data say.
struct ControlRange {
    std::uint32_t port = 0;
    float minimum = 0.0F;         ///< Minus infinity when the data say nothing.
    float maximum = 0.0F;         ///< Infinity likewise.
    bool scalesWithRate = false;  ///< The bounds are multiples of the sample rate.

    /// Whether a value lies inside, at a sample rate in Hz.
    bool holds(float value, double sampleRate) const;
};

}  // namespace orvalo
