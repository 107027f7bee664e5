#pragma once

#include <atomic>
#include <cstdint>
#include <thread>

namespace orvalo::bench {

/// Measures how punctual the machine is: while it lives, a thread of the silent clock's priority
/// only sleeps from quantum to quantum by the monotonic clock.
class BareSleeper {
  public:
    explicit BareSleeper(std::int64_t quantumNanoseconds);
    ~BareSleeper();
    BareSleeper(const BareSleeper&) = delete;
    BareSleeper& operator=(const BareSleeper&) = delete;

    /// How often it woke at least one quantum late.
    std::uint64_t lateCount() const { return late_; }
    /// The greatest lateness, in ns.
    std::int64_t latest() const { return latest_; }

  private:
    void run(std::int64_t quantum);

    std::atomic<std::uint64_t> late_ = 0;
    std::atomic<std::int64_t> latest_ = 0;
    std::atomic<bool> isOver_ = false;
    std::thread thread_;
};

}  // namespace orvalo::bench
