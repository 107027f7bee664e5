#pragma once

#include <functional>
#include <memory>
#include <string>

using WebKitWebView = struct _WebKitWebView;  // NOLINT(bugprone-reserved-identifier): WebKit's own.

namespace orvalo {

class Timer;

/// Stops and logs a web view's load that makes no progress within the time-out. The time that a
/// delegate takes for a decision does not count. Main thread.
class LoadWatch {
  public:
    /// view: must outlive the watch.
    explicit LoadWatch(WebKitWebView* view);
    ~LoadWatch();
    LoadWatch(const LoadWatch&) = delete;
    LoadWatch& operator=(const LoadWatch&) = delete;

    /// A load was stopped before any of its page arrived. May be empty.
    std::function<void(const std::string& address)> onStopped;

    /// The time-out of subsequent loads. seconds: above 0.
    void setInterval(double seconds);
    /// The address of the next load, for the log line.
    void announce(std::string address);
    /// Stops the current load if none of its page has arrived, and calls onStopped.
    void stopEmptyLoad();
    /// The current load waits for a delegate until resume().
    void pause();
    void resume();

  private:
    struct Signals;
    enum class State { idle, counting, paused };

    void restart();
    void stop(State state);
    void expire();
    void stopLoading();

    WebKitWebView* view_;
    double interval_;
    std::string announced_;
    std::string address_;       // Of the current load.
    bool isCommitted_ = false;  // The current load has begun to show its page.
    State state_ = State::idle;
    std::shared_ptr<Timer> timer_;
};

}  // namespace orvalo
