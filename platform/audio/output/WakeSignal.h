#pragma once

#include <semaphore.h>

#include <chrono>

namespace orvalo {

/// Wakes one waiting thread from any other, without a lock: from callbacks of sound servers too.
/// Takes nothing from the system that it could run out of.
class Wakeup {
  public:
    Wakeup();
    ~Wakeup();
    Wakeup(const Wakeup&) = delete;
    Wakeup& operator=(const Wakeup&) = delete;

    /// Ends the wait that is under way, or the next one.
    void signal() noexcept;
    /// Waits for a signal, at most that long. One thread.
    void wait(std::chrono::milliseconds limit) noexcept;

  private:
    sem_t signals_{};
};

}  // namespace orvalo
