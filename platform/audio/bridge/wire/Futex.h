#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace orvalo {

/// Waiting for a word in shared memory to change, by the kernel's futex. Any thread, the render
/// thread too.
class Futex {
  public:
    using Deadline = std::chrono::steady_clock::time_point;

    /// Blocks while the word equals value, until the deadline at the latest. May return early; the
    /// caller checks the word again.
    static void wait(const std::atomic<std::uint32_t>& word, std::uint32_t value,
                     Deadline deadline) noexcept;
    /// Wakes all threads that wait for the word to change.
    static void wake(std::atomic<std::uint32_t>& word) noexcept;
};

}  // namespace orvalo
