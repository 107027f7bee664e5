#include <glib.h>

#include <memory>
#include <utility>

#include "platform/foundation/DispatchQueue.h"

namespace orvalo {

namespace {

/// The global queue over a GLib thread pool.
class GlobalQueue final : public DispatchQueue {
  public:
    GlobalQueue()
        : DispatchQueue("com.orvalo.global"),
          pool_(g_thread_pool_new(run, nullptr, threads, FALSE, nullptr)) {}

    void async(WorkItem work) override {
        // Fails only to start another thread; the item then waits for a running one.
        g_thread_pool_push(pool_, std::make_unique<WorkItem>(std::move(work)).release(), nullptr);
    }

    void sync(WorkItem work) override { work(); }

  private:
    /// More threads than processors: work may wait for files and for other queues.
    static constexpr int threads = 64;

    static void run(gpointer item, gpointer /*data*/) noexcept {
        const std::unique_ptr<WorkItem> work(static_cast<WorkItem*>(item));
        (*work)();
    }

    GThreadPool* pool_;
};

}  // namespace

const std::shared_ptr<DispatchQueue>& DispatchQueue::global() {
    // Lives until the process ends, as its threads do.
    static const auto& queue = *new std::shared_ptr<DispatchQueue>(std::make_shared<GlobalQueue>());
    return queue;
}

}  // namespace orvalo
