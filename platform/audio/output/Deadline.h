#pragma once

#include <chrono>
#include <functional>

namespace orvalo {

/// Runs work on a thread of its own and waits for it at most that long; true when it is done. Else
/// the thread is left behind, to end when it can: libraries of sound servers wait without end for
/// a server that hangs. So work owns, or shares, all that it uses. Throws what work throws in time.
bool finishesWithin(std::chrono::milliseconds limit, std::function<void()> work);

}  // namespace orvalo
