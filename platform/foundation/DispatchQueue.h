#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/foundation/FatalError.h"
#include "platform/foundation/NSObject.h"
#include "platform/foundation/WorkItem.h"

namespace orvalo {

/// A queue that runs work items: the main queue (on the main thread, by the main run loop), the
/// global queue (concurrent, on worker threads) or a serial queue with a label.
class DispatchQueue : public NSObject {
  public:
    /// The main queue: first in first out, one item per turn of the main run loop. async() is
    /// lock-free. Inside a RealTimeScope it allocates nothing for closures that a WorkItem holds
    /// inline; when more than 16,384 items wait, it drops further items from such scopes and the
    /// main thread logs their number later. A run loop inside an item does not serve this queue.
    static const std::shared_ptr<DispatchQueue>& main();

    /// The global queue: items run concurrently, in no order, on threads that are never the main
    /// thread.
    static const std::shared_ptr<DispatchQueue>& global();

    /// A new serial queue: items run one after another, first in first out, on threads of the
    /// global queue, or with sync() on the caller's thread. Waiting items keep the queue alive.
    static std::shared_ptr<DispatchQueue> serial(std::string label);

    /// Submits work and returns at once. The closure is destroyed on the thread that ran it, right
    /// after its run. An exception out of work ends the program. Any thread.
    virtual void async(WorkItem work) = 0;

    /// Runs work in the queue's order and returns when it has ended. Runs on the main thread for
    /// the main queue, else on the caller's thread; the global queue runs it at once. A call on the
    /// main queue from the main thread, or on a serial queue from its own work, would deadlock: a
    /// fatal error, "sync on the queue '<label>' from its own work would never end.".
    virtual void sync(WorkItem work) = 0;

    /// The label: "com.orvalo.main-thread" for the main queue, "com.orvalo.global" for the global
    /// queue, else the given one.
    const std::string& label() const { return label_; }

  protected:
    explicit DispatchQueue(std::string label) : label_(std::move(label)) {}

    [[noreturn]] void endForSyncFromOwnWork() const {
        fatalError("sync on the queue '" + label_ + "' from its own work would never end.");
    }

  private:
    const std::string label_;
};

}  // namespace orvalo
