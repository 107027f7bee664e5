#pragma once

#include <sys/types.h>

#include <vector>

namespace orvalo::testing {

/// The web page processes of this process, in no order.
std::vector<pid_t> webProcesses();

}  // namespace orvalo::testing
