#pragma once

#include <sys/types.h>

#include <vector>

#include "platform/audio/bridge/host/BridgeLimits.h"

namespace orvalo::testing {

/// The services that this program has started and not yet reaped.
std::vector<pid_t> servicePids();
/// Kills the service; false unless there is exactly one.
bool killService();

/// Limits under which a service on a busy machine is not taken for a hanging one.
BridgeLimits unhurriedLimits();

}  // namespace orvalo::testing
