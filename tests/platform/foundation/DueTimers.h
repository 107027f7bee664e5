#pragma once

#include <cstddef>

namespace orvalo::testing {

/// Waits, without serving it, until so many timers of the calling thread's run loop are due: the
/// next turn then fires them all. That their time is over does not say as much, because the kernel
/// may be late on the processor on which one of them was started. False when they never are.
bool waitUntilDue(std::size_t timers);

}  // namespace orvalo::testing
