#include "platform/audio/bridge/host/ControlRange.h"

#include <cmath>

namespace orvalo {

bool ControlRange::holds(float value, double sampleRate) const {
    // A bound times a rate may be rounded in another way by the effect.
    constexpr double kSlack = 1e-6;
    const double factor = scalesWithRate ? sampleRate : 1.0;
    const double low = minimum * factor;
    const double high = maximum * factor;
    const double slack = std::isfinite(high - low) ? (high - low) * kSlack : 0.0;
    return std::isfinite(value) && value >= low - slack && value <= high + slack;
}

}  // namespace orvalo
