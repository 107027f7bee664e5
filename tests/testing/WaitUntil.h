#pragma once

#include <chrono>
#include <functional>

namespace orvalo::testing {

/// Serves the calling thread's run loop until the condition holds; false after the timeout. Checks
/// the condition only after turns of the loop, so that a missing wake-up fails the test.
bool waitUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds timeout = std::chrono::minutes(1));

/// waitUntil() for conditions that other threads, processes or the display change without waking
/// the loop: checks every few milliseconds as well.
bool pollUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds timeout = std::chrono::minutes(1));

}  // namespace orvalo::testing
