#include "platform/foundation/RunLoop.h"

#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <mutex>
#include <vector>

#include "platform/foundation/FatalError.h"
#include "platform/foundation/GLibPointer.h"

namespace orvalo {

/// The run() calls that stop() can end, the innermost last. Not GMainLoops: g_main_loop_run() would
/// lose a stop() that comes before it has begun.
struct RunLoop::Loop {
    struct Run {
        bool isStopped = false;
    };

    std::mutex mutex;
    std::vector<Run*> runs;
};

namespace {

/// Owns a context for the calling thread. Without the ownership, turns would not wait.
class Ownership {
  public:
    explicit Ownership(GMainContext* context) : context_(context) {
        // Between two turns GLib would let any thread acquire the default context.
        const bool isForeign = context_ == g_main_context_default() && !RunLoop::isMainThread();
        if (isForeign || !g_main_context_acquire(context_)) {
            fatalError("A run loop runs on its own thread only.");
        }
    }
    ~Ownership() { g_main_context_release(context_); }
    Ownership(const Ownership&) = delete;
    Ownership& operator=(const Ownership&) = delete;

  private:
    GMainContext* context_;
};

/// A thread's context and loop, from the first use to the thread's end.
class ThreadLoop {
  public:
    ThreadLoop() {
        GMainContext* context = g_main_context_new();
        loop_ = std::make_shared<RunLoop>(context);
        g_main_context_unref(context);
        g_main_context_push_thread_default(context);
    }
    ~ThreadLoop() { g_main_context_pop_thread_default(loop_->context()); }
    ThreadLoop(const ThreadLoop&) = delete;
    ThreadLoop& operator=(const ThreadLoop&) = delete;

    const std::shared_ptr<RunLoop>& loop() const { return loop_; }

  private:
    std::shared_ptr<RunLoop> loop_;
};

}  // namespace

RunLoop::RunLoop(GMainContext* context)
    : context_(g_main_context_ref(context)), loop_(std::make_unique<Loop>()) {}

RunLoop::~RunLoop() {
    g_main_context_unref(context_);
}

std::shared_ptr<RunLoop> RunLoop::main() {
    // Never destroyed: threads may still use it while the process ends.
    static const auto& loop =
        *new std::shared_ptr<RunLoop>(std::make_shared<RunLoop>(g_main_context_default()));
    return loop;
}

std::shared_ptr<RunLoop> RunLoop::current() {
    if (isMainThread()) {
        return main();
    }
    thread_local const ThreadLoop own;
    return own.loop();
}

bool RunLoop::isMainThread() {
    return gettid() == getpid();
}

void RunLoop::run() {
    const Ownership ownership(context_);
    Loop::Run run;
    std::unique_lock lock(loop_->mutex);
    loop_->runs.push_back(&run);
    while (!run.isStopped) {
        lock.unlock();
        g_main_context_iteration(context_, TRUE);
        lock.lock();
    }
    loop_->runs.pop_back();
}

bool RunLoop::run(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
    const Ownership ownership(context_);
    const auto end = std::chrono::steady_clock::now() + deadline;
    // The source only wakes the loop; the comparison below decides.
    const auto interval =
        std::clamp<std::int64_t>(deadline.count(), 0, std::numeric_limits<std::int32_t>::max());
    const GSourcePointer wake(g_timeout_source_new(static_cast<guint>(interval)));
    g_source_set_callback(
        wake.get(), [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr, nullptr);
    g_source_attach(wake.get(), context_);
    bool holds = condition();
    while (!holds && std::chrono::steady_clock::now() < end) {
        g_main_context_iteration(context_, TRUE);
        holds = condition();
    }
    return holds;
}

void RunLoop::stop() {
    const std::lock_guard lock(loop_->mutex);
    if (!loop_->runs.empty()) {
        loop_->runs.back()->isStopped = true;
        g_main_context_wakeup(context_);
    }
}

}  // namespace orvalo
