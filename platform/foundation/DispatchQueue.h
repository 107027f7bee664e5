#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/foundation/NSObject.h"
#include "platform/foundation/WorkItem.h"

namespace orvalo {

/// A queue that runs work items. Three kinds: the main queue (on the main thread, by the main run
/// loop), the global queue (concurrent, worker threads, default quality of service) and serial
/// queues with a label.
class DispatchQueue : public NSObject {
  public:
    /// The main queue: first in first out, one item per turn of the main run loop. async() is
    /// lock-free and wakes the run loop. Inside a RealTimeScope it does not allocate either, for
    /// closures that a WorkItem holds inline; when more than 16,384 items wait, further ones from
    /// such a scope are dropped, counted, and reported on standard error by the main thread, once
    /// it has caught up. A run loop inside an item serves all but this queue.
    static const std::shared_ptr<DispatchQueue>& main();

    /// The global queue of default quality of service: items run side by side, in no order, on
    /// threads that are never the main thread.
    static const std::shared_ptr<DispatchQueue>& global();

    /// A serial queue: items run one after another, first in first out, on threads of the global
    /// queue or, with sync(), on the caller's. Items that wait keep the queue alive.
    static std::shared_ptr<DispatchQueue> serial(std::string label);

    /// Hands work over and returns at once. The closure goes where it ran, right after it. An
    /// exception out of work ends the program. Any thread.
    virtual void async(WorkItem work) = 0;

    /// Runs work in the queue's order and returns when it has ended: on the main thread for the
    /// main queue, on the caller's for the others; the global queue has no order to wait for. A
    /// call on the main queue from the main thread, or on a serial queue from work that it is
    /// running, would wait for itself for ever, so it is a fatal error that names the queue: "sync
    /// on the queue '<label>' from its own work would never end.".
    virtual void sync(WorkItem work) = 0;

    /// The label: "com.orvalo.main-thread" style for the shared queues, the given one otherwise.
    const std::string& label() const { return label_; }

  protected:
    explicit DispatchQueue(std::string label) : label_(std::move(label)) {}

  private:
    const std::string label_;
};

}  // namespace orvalo
