#pragma once

#include <sched.h>
#include <sys/types.h>

#include <chrono>

namespace orvalo {

/// Keeps the render thread on the processor where it is, so that the process of an effect can go
/// there, too. The two take turns, so one processor is enough; a thread that is woken where the
/// waker is about to sleep starts at once, while another processor has to be woken first. A thread
/// that is free is woken on any idle processor, which is never the one that the effect has just
/// worked on. Once in a while the thread is let go for a quantum, so that the system can still move
/// it to where there is less to do.
class ProcessorHold {
  public:
    using Time = std::chrono::steady_clock::time_point;

    /// How long the thread is held in one go.
    static constexpr std::chrono::seconds kLength{1};

    /// Holds, or lets go, as it is time to. Where the thread may run is never widened beyond what
    /// it was, and not touched when somebody else has changed it meanwhile. The processor that it
    /// is on; -1 when the system does not tell.
    int keep(Time now) noexcept;
    /// Lets go for good, if it holds. Any thread, while keep() is not called.
    void letGo() noexcept;

  private:
    void hold(int processor) noexcept;

    bool isHolding_ = false;
    pid_t thread_ = 0;  ///< That it holds.
    Time until_;
    cpu_set_t before_{};  ///< Where the thread might run.
    cpu_set_t held_{};
};

}  // namespace orvalo
