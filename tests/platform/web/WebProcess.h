#pragma once

#include <sys/types.h>

#include <vector>

namespace orvalo::testing {

/// The processes of web pages that this process has started, in no order.
std::vector<pid_t> webProcesses();

}  // namespace orvalo::testing
