#pragma once

#include <deque>
#include <mutex>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/GLibPointer.h"

namespace orvalo {

/// The global queue over a GLib thread pool. Each submission asks the pool for one turn; a turn
/// takes the oldest item. sync() runs the work on the caller's thread.
class GlobalQueue final : public DispatchQueue {
  public:
    /// More threads than processors: work may wait for files and for other queues.
    static constexpr int threads = 64;

    GlobalQueue();

    void async(WorkItem work) override;
    void sync(WorkItem work) override;

  private:
    void runOne() noexcept;

    std::mutex mutex_;
    std::deque<WorkItem> items_;
    GThreadPool* pool_;
};

}  // namespace orvalo
