#pragma once

#include <cstddef>

namespace orvalo::testing {

/// Waits, without running it, until that many timers of the calling thread's run loop are due: the
/// next turn then fires them all. Waiting for their time alone is not enough, because the kernel
/// may expire them late. Returns false when they do not become due.
bool waitUntilDue(std::size_t timers);

}  // namespace orvalo::testing
