#pragma once

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
    /// Starts work on a thread of its own, after the work that was started before. The future
    /// becomes ready at its end; dropping it does not wait. Any thread.
    std::future<void> start(std::function<void()> work);
    /// The same, and waits for the end at most for limit; true when the work has ended. Otherwise
    /// it goes on alone, so it owns or shares all that it uses. Throws what the work throws in
    /// time. Any thread.
    bool finishWithin(std::chrono::milliseconds limit, std::function<void()> work);

  private:
    std::packaged_task<void()> inTurn(std::function<void()> work);

    std::mutex turn_;
};

}  // namespace orvalo
