#include "platform/foundation/GlobalQueue.h"

#include <glib.h>

#include <utility>

namespace orvalo {

GlobalQueue::GlobalQueue()
    : DispatchQueue("com.orvalo.global"),
      pool_(g_thread_pool_new(
          [](gpointer /*turn*/, gpointer queue) { static_cast<GlobalQueue*>(queue)->runOne(); },
          this, threads, FALSE, nullptr)) {}

void GlobalQueue::async(WorkItem work) {
    {
        const std::lock_guard lock(mutex_);
        items_.push_back(std::move(work));
    }
    // Fails only to start a further thread; the turn then waits for one that runs.
    g_thread_pool_push(pool_, this, nullptr);
}

void GlobalQueue::sync(WorkItem work) {
    work();
}

void GlobalQueue::runOne() noexcept {
    WorkItem work;
    {
        const std::lock_guard lock(mutex_);
        work = std::move(items_.front());
        items_.pop_front();
    }
    work();
}

const std::shared_ptr<DispatchQueue>& DispatchQueue::global() {
    // Lives until the process ends: its threads do, too.
    static const auto& queue = *new std::shared_ptr<DispatchQueue>(std::make_shared<GlobalQueue>());
    return queue;
}

}  // namespace orvalo
