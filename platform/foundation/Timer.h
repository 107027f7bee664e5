#pragma once

#include <functional>
#include <memory>

#include "platform/foundation/NSObject.h"

using GSource = struct _GSource;  // NOLINT(bugprone-reserved-identifier): GLib's own.

namespace orvalo {

/// A repeating timer on a run loop, over a timerfd with absolute monotonic times: periods do not
/// drift, and periods missed while the thread was busy are made up by one firing.
class Timer : public NSObject {
  public:
    /// Starts a timer on the calling thread's run loop, which keeps it alive, and its block with
    /// it, until invalidate() or the thread's end. withTimeInterval: seconds; a value that is not
    /// above 0.0001 (NaN included) counts as 0.0001. block: called on that thread with the timer.
    static std::shared_ptr<Timer> scheduledTimer(
        double withTimeInterval, std::function<void(const std::shared_ptr<Timer>&)> block);

    /// Ends the firings and releases the block, after its return when called from inside it. On the
    /// thread that started the timer; a second call does nothing.
    void invalidate();
    bool isValid() const;

    ~Timer() override;

  private:
    Timer();
    struct Source;
    std::unique_ptr<Source> source_;
};

}  // namespace orvalo
