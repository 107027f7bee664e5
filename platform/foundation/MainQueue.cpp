#include <glib.h>
#include <sys/eventfd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/FatalError.h"
#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/MainQueueStore.h"
#include "platform/foundation/OneShot.h"
#include "platform/foundation/RealTimeScope.h"
#include "platform/foundation/RunLoop.h"

namespace orvalo {

namespace {

/// The main queue over the default main context: one source, one item a turn.
/// g_main_context_invoke() and g_idle_add() allocate and lock, which the render thread must not. A
/// submission costs a system call only when the run loop sleeps or is about to.
class MainQueue final : public DispatchQueue {
  public:
    MainQueue();

    void async(WorkItem work) override;
    void sync(WorkItem work) override;

  private:
    struct Source;

    MainQueueNode* takeNode();
    void giveBack(MainQueueNode& node);
    void wake() noexcept;
    bool isReady() noexcept;
    /// Whether an item waits; if none does, the next submission wakes the run loop.
    bool isReadyBeforeSleep() noexcept;
    void runOne() noexcept;

    MainQueuePool pool_;
    MainQueueStore store_{*pool_.take()};
    const FileDescriptor wakeDescriptor_;
    /// Whether the run loop will check the queue again without being woken.
    std::atomic<bool> isAwake_{false};
    std::atomic<std::uint64_t> dropped_{0};
    GSourcePointer source_;
};

struct MainQueue::Source {
    GSource base;
    MainQueue* queue;
    gpointer tag;

    static Source& of(GSource* source) { return *reinterpret_cast<Source*>(source); }

    static gboolean prepare(GSource* source, gint* timeout) {
        *timeout = -1;
        return of(source).queue->isReadyBeforeSleep();
    }

    static gboolean check(GSource* source) {
        const auto& own = of(source);
        if (g_source_query_unix_fd(source, own.tag) != 0) {
            eventfd_t count = 0;
            eventfd_read(own.queue->wakeDescriptor_.get(), &count);
        }
        return own.queue->isReady();
    }

    static gboolean dispatch(GSource* source, GSourceFunc /*callback*/, gpointer /*data*/) {
        of(source).queue->runOne();
        return G_SOURCE_CONTINUE;
    }
};

MainQueue::MainQueue()
    : DispatchQueue("com.orvalo.main-thread"),
      wakeDescriptor_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (!wakeDescriptor_) {
        fatalError(std::string("The main queue could not start: ") + g_strerror(errno));
    }
    static GSourceFuncs functions{.prepare = Source::prepare,
                                  .check = Source::check,
                                  .dispatch = Source::dispatch,
                                  .finalize = nullptr,
                                  .closure_callback = nullptr,
                                  .closure_marshal = nullptr};
    source_.reset(g_source_new(&functions, sizeof(Source)));
    g_source_set_static_name(source_.get(), "main queue");
    auto& own = Source::of(source_.get());
    own.queue = this;
    own.tag = g_source_add_unix_fd(source_.get(), wakeDescriptor_.get(), G_IO_IN);
    g_source_attach(source_.get(), g_main_context_default());
}

void MainQueue::async(WorkItem work) {
    if (auto* node = takeNode()) {
        node->work = std::move(work);
        store_.push(*node);
    } else {
        dropped_.fetch_add(1, std::memory_order_relaxed);
    }
    wake();
}

void MainQueue::sync(WorkItem work) {
    // Only the main thread runs this queue, so it must never wait for it.
    if (RunLoop::isMainThread()) {
        endForSyncFromOwnWork();
    }
    OneShot done;
    async([&work, &done] {
        work();
        work.reset();
        done.signal();
    });
    done.wait();
}

MainQueueNode* MainQueue::takeNode() {
    auto* node = pool_.take();
    if (node == nullptr && !RealTimeScope::isActive()) {
        node = std::make_unique<MainQueueNode>().release();
    }
    return node;
}

void MainQueue::giveBack(MainQueueNode& node) {
    if (node.place != 0) {
        pool_.giveBack(node);
    } else {
        const std::unique_ptr<MainQueueNode> owner(&node);
    }
}

void MainQueue::wake() noexcept {
    // The exchanges here and in isReadyBeforeSleep() have one order: either this one sees that the
    // loop went to sleep, or the loop sees the item after its own exchange.
    if (!isAwake_.exchange(true, std::memory_order_acq_rel)) {
        eventfd_write(wakeDescriptor_.get(), 1);
    }
}

bool MainQueue::isReady() noexcept {
    return store_.canPop() || dropped_.load(std::memory_order_relaxed) != 0;
}

bool MainQueue::isReadyBeforeSleep() noexcept {
    if (isReady()) {
        return true;
    }
    if (!isAwake_.load(std::memory_order_relaxed)) {
        return false;
    }
    isAwake_.exchange(false, std::memory_order_acq_rel);
    if (!isReady()) {
        return false;
    }
    isAwake_.exchange(true, std::memory_order_acq_rel);
    return true;
}

void MainQueue::runOne() noexcept {
    WorkItem work;
    if (auto* spent = store_.pop(work)) {
        giveBack(*spent);
        work();
        return;
    }
    if (const auto dropped = dropped_.exchange(0, std::memory_order_relaxed); dropped != 0) {
        g_warning("The main queue was full: %" G_GUINT64_FORMAT
                  " items from the render thread were dropped.",
                  dropped);
    }
}

}  // namespace

const std::shared_ptr<DispatchQueue>& DispatchQueue::main() {
    // Never destroyed: threads may still submit work while the process ends.
    static const auto& queue = *new std::shared_ptr<DispatchQueue>(std::make_shared<MainQueue>());
    return queue;
}

namespace {

// Created before any thread renders, because creating it allocates.
[[maybe_unused]] const auto& createdAtStart = DispatchQueue::main();

}  // namespace

}  // namespace orvalo
