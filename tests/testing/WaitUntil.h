#pragma once

#include <chrono>
#include <functional>

namespace orvalo::testing {

/// Serves the calling thread's run loop until the condition holds; false when it does not in time.
/// Looks after each turn of the loop only, so that a wake-up that is missing fails the test.
bool waitUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds timeout = std::chrono::minutes(1));

/// The same for what other threads, processes and the display change without waking the loop: looks
/// every few milliseconds as well.
bool pollUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds timeout = std::chrono::minutes(1));

}  // namespace orvalo::testing
