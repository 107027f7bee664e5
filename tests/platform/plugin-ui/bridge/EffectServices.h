#pragma once

#include <sys/types.h>

#include <vector>

namespace orvalo::testing {

/// The services that this program has started and not yet reaped.
std::vector<pid_t> servicePids();
/// Kills the service; false unless there is exactly one.
bool killService();

}  // namespace orvalo::testing
