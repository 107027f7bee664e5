#pragma once

#include <algorithm>
#include <chrono>

namespace orvalo {

/// The time that a loop has been watching. A turn that took longer than any should, because the
/// machine slept or this program was stopped, counts for little: whoever was to answer meanwhile
/// slept, too. One thread.
class AttentiveClock {
  public:
    using Clock = std::chrono::steady_clock;

    /// longestTurn: what a turn counts for at most.
    AttentiveClock(Clock::time_point start, Clock::duration longestTurn)
        : now_(start), last_(start), longestTurn_(longestTurn) {}

    /// Once a turn.
    void turn(Clock::time_point now) {
        now_ += std::min(now - last_, longestTurn_);
        last_ = now;
    }

    Clock::time_point now() const { return now_; }

  private:
    Clock::time_point now_;
    Clock::time_point last_;
    const Clock::duration longestTurn_;
};

}  // namespace orvalo
