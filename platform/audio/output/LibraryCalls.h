#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <mutex>

namespace orvalo {

/// The libraries of sound servers wait without end for a server that hangs, and keep state that
/// only one thread at a time may touch, in places. One object for a library, that lives as long as
/// the program, gives each call into it a turn and a limit.
class Turns {
  public:
    /// Begins work on a thread of its own, after what has begun before, and leaves it to itself;
    /// the future tells of its end. Any thread.
    std::future<void> begin(std::function<void()> work);
    /// Runs work on a thread of its own, after what has begun before, and waits for its end at most
    /// that long; true when it was reached. Else the thread is left behind, to end when it can, so
    /// work owns or shares all that it uses. Throws what work throws in time. Any thread.
    bool finishWithin(std::chrono::milliseconds limit, std::function<void()> work);

  private:
    std::packaged_task<void()> inTurn(std::function<void()> work);

    std::mutex turn_;
};

}  // namespace orvalo
