#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/foundation/NSObject.h"

using GMainContext = struct _GMainContext;  // NOLINT(bugprone-reserved-identifier): GLib's own.

namespace orvalo {

/// A thread's run loop: its GLib main context. The process's first thread has the default context,
/// which windows, the web view and the main queue share; every other thread gets one of its own at
/// the first use.
class RunLoop : public NSObject {
  public:
    /// The main thread's run loop. Any thread.
    static std::shared_ptr<RunLoop> main();
    /// The calling thread's run loop.
    static std::shared_ptr<RunLoop> current();
    /// Whether the calling thread is the main thread, the first of the process.
    static bool isMainThread();

    /// Serves sources until stop(). On the loop's own thread; elsewhere a fatal error.
    void run();
    /// Serves sources until condition() holds, looked at after every turn, or the deadline passes;
    /// returns whether it held. stop() does not end it. On the loop's own thread.
    bool run(const std::function<bool()>& condition, std::chrono::milliseconds deadline);
    /// Makes run(), the innermost, return after the current turn; does nothing when none runs. Any
    /// thread.
    void stop();

    GMainContext* context() const { return context_; }

    explicit RunLoop(GMainContext* context);  ///< For the two operations above: holds the context.
    ~RunLoop() override;

  private:
    GMainContext* context_;
    struct Loop;
    std::unique_ptr<Loop> loop_;
};

}  // namespace orvalo
