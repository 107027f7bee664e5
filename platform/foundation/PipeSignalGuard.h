#pragma once

#include <csignal>

namespace orvalo {

/// Keeps the calling thread's writes to closed pipes, for the guard's life, from raising SIGPIPE:
/// such a write only fails. Leaves the thread's signal mask, the process's dispositions and a
/// SIGPIPE that was pending already as they were.
class PipeSignalGuard {
  public:
    PipeSignalGuard() noexcept;
    ~PipeSignalGuard();
    PipeSignalGuard(const PipeSignalGuard&) = delete;
    PipeSignalGuard& operator=(const PipeSignalGuard&) = delete;

  private:
    sigset_t pipeSignal_{};
    sigset_t maskBefore_{};
    bool wasPending_ = false;
};

}  // namespace orvalo
