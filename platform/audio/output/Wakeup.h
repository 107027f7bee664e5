#pragma once

#include <chrono>

namespace orvalo {

/// Wakes one waiting thread from any other, without a lock: from callbacks of sound servers too.
class Wakeup {
  public:
    /// Throws NSError when the system has no descriptor left.
    Wakeup();
    ~Wakeup();
    Wakeup(const Wakeup&) = delete;
    Wakeup& operator=(const Wakeup&) = delete;

    /// Ends the wait that is under way, or the next one.
    void signal() const noexcept;
    /// Waits for a signal, at most that long. One thread.
    void wait(std::chrono::milliseconds limit) noexcept;

  private:
    int descriptor_;
};

}  // namespace orvalo
