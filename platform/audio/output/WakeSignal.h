#pragma once

#include <semaphore.h>

#include <chrono>

namespace orvalo {

/// Wakes one waiting thread from any other thread, without a lock and without a descriptor.
class WakeSignal {
  public:
    WakeSignal();
    ~WakeSignal();
    WakeSignal(const WakeSignal&) = delete;
    WakeSignal& operator=(const WakeSignal&) = delete;

    /// Ends the wait that is under way, else the next one. Any thread, real-time ones too.
    void send() noexcept;
    /// Waits for a signal, at most for limit. Signals sent before it returns count as one. One
    /// thread.
    void wait(std::chrono::milliseconds limit) noexcept;

  private:
    sem_t signals_{};
};

}  // namespace orvalo
