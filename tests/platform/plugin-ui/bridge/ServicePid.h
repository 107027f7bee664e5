#pragma once

#include <sys/types.h>

#include <vector>

namespace orvalo::testing {

/// The processes of this program's effects, those that are not reaped yet among them.
std::vector<pid_t> servicePids();
/// Kills the process of this program's effect; false when there is none, or another.
bool killService();

}  // namespace orvalo::testing
