#pragma once

#include <deque>
#include <mutex>

#include "platform/foundation/OneShot.h"
#include "platform/foundation/WorkItem.h"

using SoupSession = struct _SoupSession;    // NOLINT(bugprone-reserved-identifier): libsoup's own.
using GMainContext = struct _GMainContext;  // NOLINT(bugprone-reserved-identifier): GLib's own.

namespace orvalo {

/// The thread of all HTTP transfers, so that neither the main thread nor the queues wait for the
/// network. Started at the first use; runs until the process ends.
class LoadingThread {
  public:
    static LoadingThread& shared();

    /// Runs work on the thread, first in first out, and returns at once. Any thread but this one.
    void perform(WorkItem work);
    /// The HTTP client. On the loading thread only.
    SoupSession* session() const { return session_; }
    /// Any thread.
    GMainContext* context() const { return context_; }

  private:
    LoadingThread();

    void run();
    void runOne();

    std::mutex mutex_;
    std::deque<WorkItem> items_;
    OneShot isReady_;
    SoupSession* session_ = nullptr;
    GMainContext* context_ = nullptr;
};

}  // namespace orvalo
