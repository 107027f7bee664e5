#pragma once

#include "platform/audio/bridge/host/BridgeLimits.h"

namespace orvalo::testing {

/// With which a machine that has much else to do is no hang.
inline BridgeLimits unhurriedLimits() {
    BridgeLimits limits;
    limits.hang = std::chrono::seconds(15);
    limits.request = std::chrono::seconds(60);
    limits.offlineWait = std::chrono::seconds(60);
    return limits;
}

}  // namespace orvalo::testing
