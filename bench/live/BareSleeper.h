#pragma once

#include <atomic>
#include <cstdint>
#include <thread>

namespace orvalo::bench {

/// How punctual the machine itself is: a thread of an output's real-time priority that sleeps from
/// quantum to quantum by the monotonic clock and does nothing else, for as long as the object
/// lives.
class BareSleeper {
  public:
    explicit BareSleeper(std::int64_t quantumNanoseconds);
    ~BareSleeper();
    BareSleeper(const BareSleeper&) = delete;
    BareSleeper& operator=(const BareSleeper&) = delete;

    /// How often it was woken a whole quantum late or more.
    std::uint64_t lateCount() const { return late_; }
    /// The latest that it was woken, in ns.
    std::int64_t latest() const { return latest_; }

  private:
    void run(std::int64_t quantum);

    std::atomic<std::uint64_t> late_ = 0;
    std::atomic<std::int64_t> latest_ = 0;
    std::atomic<bool> isOver_ = false;
    std::thread thread_;
};

}  // namespace orvalo::bench
