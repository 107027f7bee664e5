#pragma once

#include <chrono>
#include <deque>

namespace orvalo {

/// Whether a process that died is started again: not when it has died so often within a window of
/// time that it would go on dying. One thread.
class RestartPolicy {
  public:
    using Clock = std::chrono::steady_clock;

    RestartPolicy(unsigned deaths, Clock::duration window) : deaths_(deaths), window_(window) {}

    /// Counts a death. False when it is the last, the given number within less than the window.
    bool mayRestartAfterDeath(Clock::time_point now) {
        while (!recent_.empty() && now - recent_.front() >= window_) {
            recent_.pop_front();
        }
        recent_.push_back(now);
        return recent_.size() < deaths_;
    }

  private:
    const unsigned deaths_;
    const Clock::duration window_;
    std::deque<Clock::time_point> recent_;
};

}  // namespace orvalo
