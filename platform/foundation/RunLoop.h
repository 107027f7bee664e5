#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/foundation/NSObject.h"

using GMainContext = struct _GMainContext;  // NOLINT(bugprone-reserved-identifier): GLib's own.

namespace orvalo {

/// A thread's run loop: its GLib main context. The main thread has the default context, which
/// windows, the web view and the main queue share. Every other thread gets its own at the first
/// use.
class RunLoop : public NSObject {
  public:
    /// The main thread's run loop. Any thread.
    static std::shared_ptr<RunLoop> main();
    /// The calling thread's run loop.
    static std::shared_ptr<RunLoop> current();
    /// Whether the calling thread is the first of the process.
    static bool isMainThread();

    /// Dispatches sources until stop(). On the loop's own thread; elsewhere a fatal error.
    void run();
    /// Dispatches sources until condition(), called after every turn, holds or the deadline passes.
    /// Returns whether it held. stop() does not end it. On the loop's own thread.
    bool run(const std::function<bool()>& condition, std::chrono::milliseconds deadline);
    /// Ends the innermost run() after the current turn. Does nothing when none runs. Any thread.
    void stop();

    GMainContext* context() const { return context_; }

    explicit RunLoop(GMainContext* context);  ///< Keeps the context. For main() and current().
    ~RunLoop() override;

  private:
    GMainContext* context_;
    struct Loop;
    std::unique_ptr<Loop> loop_;
};

}  // namespace orvalo
