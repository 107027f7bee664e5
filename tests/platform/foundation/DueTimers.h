#pragma once

#include <cstddef>

namespace orvalo::testing {

/// Waits until that many timers of the calling thread's run loop are due, without running the loop:
/// the next turn then fires them all. Sleeping until their time is not enough, because the kernel
/// may expire timers late. Returns false when they do not become due.
bool waitUntilDue(std::size_t timers);

}  // namespace orvalo::testing
