#include <glib.h>

#include <deque>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/foundation/DispatchQueue.h"

#if defined(__SANITIZE_THREAD__)
// Of the pool's own queue the sanitizer sees how its links are freed, but not GLib's locks.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer's name.
extern "C" const char* __tsan_default_suppressions() {
    return "race:g_queue_pop_tail\n";
}
#endif

namespace orvalo {

namespace {

/// The global queue over a GLib thread pool. Each submission asks the pool for one turn, which runs
/// the oldest item. The items wait here and not in the pool: the thread sanitizer does not see
/// GLib's locks, so it would report every item of the pool as a data race.
class GlobalQueue final : public DispatchQueue {
  public:
    GlobalQueue()
        : DispatchQueue("com.orvalo.global"),
          pool_(g_thread_pool_new(
              [](gpointer /*turn*/, gpointer queue) { static_cast<GlobalQueue*>(queue)->runOne(); },
              this, threads, FALSE, nullptr)) {}

    void async(WorkItem work) override {
        {
            const std::lock_guard lock(mutex_);
            items_.push_back(std::move(work));
        }
        // Fails only to start another thread; the turn then waits for a running one.
        g_thread_pool_push(pool_, this, nullptr);
    }

    void sync(WorkItem work) override { work(); }

  private:
    /// More threads than processors: work may wait for files and for other queues.
    static constexpr int threads = 64;

    void runOne() noexcept {
        WorkItem work;
        {
            const std::lock_guard lock(mutex_);
            work = std::move(items_.front());
            items_.pop_front();
        }
        work();
    }

    std::mutex mutex_;
    std::deque<WorkItem> items_;
    GThreadPool* pool_;
};

}  // namespace

const std::shared_ptr<DispatchQueue>& DispatchQueue::global() {
    // Never destroyed: its threads run until the process ends.
    static const auto& queue = *new std::shared_ptr<DispatchQueue>(std::make_shared<GlobalQueue>());
    return queue;
}

}  // namespace orvalo
