#pragma once

#include <sys/types.h>

#include <vector>

namespace orvalo::testing {

/// The processes of this program's effects, those that are not reaped yet among them.
std::vector<pid_t> servicePids();

}  // namespace orvalo::testing
