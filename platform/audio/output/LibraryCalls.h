#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <mutex>

namespace orvalo {

/// Calls into the library of a sound server, one at a time and with a time limit: such libraries
/// wait without end for a server that hangs, and keep state that is not safe for two threads. One
/// object for each library; it lives as long as the program.
class LibraryCalls {
  public:
    /// Starts work on a new thread, after the work that was started before. The future becomes
    /// ready when the work ends; destroying the future does not wait. Any thread.
    std::future<void> start(std::function<void()> work);
    /// As start(), and waits until the work ends, at most for limit. False when the limit has
    /// passed: the work then continues, so it must own or share all that it uses. Throws what the
    /// work throws within the limit. Any thread.
    bool finishWithin(std::chrono::milliseconds limit, std::function<void()> work);
    /// Whether work has been started that has not ended yet. Any thread.
    bool isBusy() const { return pendingCount_ != 0; }

  private:
    std::packaged_task<void()> inTurn(std::function<void()> work);

    std::mutex turn_;
    std::atomic<int> pendingCount_{0};
};

}  // namespace orvalo
