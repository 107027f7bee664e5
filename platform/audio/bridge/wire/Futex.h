#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace orvalo {

/// A word in shared memory that two processes wait on: the kernel's futex, without its lock. Any
/// thread; never allocates.
class Futex {
  public:
    using Deadline = std::chrono::steady_clock::time_point;

    /// Waits while the word is value, until the deadline at the latest. May return early; the
    /// caller looks at the word again.
    static void wait(const std::atomic<std::uint32_t>& word, std::uint32_t value,
                     Deadline deadline) noexcept;
    /// Wakes who waits on the word.
    static void wake(std::atomic<std::uint32_t>& word) noexcept;
};

}  // namespace orvalo
