#pragma once

#include <sys/types.h>

#include <vector>

namespace orvalo::testing {

/// The services that this program has started and not yet reaped.
std::vector<pid_t> servicePids();
/// Waits until there is exactly one service, because an earlier one may not be reaped yet, and
/// kills it; false after a minute.
bool killService();

}  // namespace orvalo::testing
