#pragma once

#include <chrono>

#include "platform/audio/bridge/host/BridgeLimits.h"

namespace orvalo::testing {

/// Limits with which no quantum and no answer is late on a busy machine.
inline BridgeLimits patientLimits() {
    BridgeLimits limits;
    limits.waitFraction = 4000.0 * BridgeLimits::kSlowness;
    limits.request = std::chrono::seconds(20) * BridgeLimits::kSlowness;
    limits.pluginUI = std::chrono::seconds(60) * BridgeLimits::kSlowness;
    return limits;
}

/// patientLimits() with which a service on a busy machine is not taken for a hanging one, either.
inline BridgeLimits unhurriedLimits() {
    auto limits = patientLimits();
    limits.hang = std::chrono::seconds(15) * BridgeLimits::kSlowness;
    limits.offlineWait = std::chrono::seconds(60) * BridgeLimits::kSlowness;
    return limits;
}

}  // namespace orvalo::testing
