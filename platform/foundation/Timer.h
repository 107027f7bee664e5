#pragma once

#include <functional>
#include <memory>

#include "platform/foundation/NSObject.h"

using GSource = struct _GSource;  // NOLINT(bugprone-reserved-identifier): GLib's own.

namespace orvalo {

/// A repeating timer on a run loop. Periods do not drift, as they would with
/// g_timeout_source_new(); missed periods coalesce into one firing.
class Timer : public NSObject {
  public:
    /// Starts a timer on the calling thread's run loop, which keeps it and its block alive until
    /// invalidate() or the thread's end. withTimeInterval: seconds; NaN and values below 0.0001 are
    /// clamped to 0.0001. block: called on that thread with the timer.
    static std::shared_ptr<Timer> scheduledTimer(
        double withTimeInterval, std::function<void(const std::shared_ptr<Timer>&)> block);

    /// Stops the timer and destroys the block, after its return when called from inside it. A
    /// second call does nothing. On the thread that started the timer.
    void invalidate();
    bool isValid() const;

    ~Timer() override;

  private:
    Timer();
    struct Source;
    std::unique_ptr<Source> source_;
};

}  // namespace orvalo
