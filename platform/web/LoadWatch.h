#pragma once

#include <memory>
#include <string>

using WebKitWebView = struct _WebKitWebView;  // NOLINT(bugprone-reserved-identifier): WebKit's own.

namespace orvalo {

class Timer;

/// Stops what a web view loads when nothing has come for a time, with a line on standard error. The
/// time that a delegate takes for a decision does not count. Main thread.
class LoadWatch {
  public:
    /// view: outlives the watch.
    explicit LoadWatch(WebKitWebView* view);
    ~LoadWatch();
    LoadWatch(const LoadWatch&) = delete;
    LoadWatch& operator=(const LoadWatch&) = delete;

    /// For the loads that begin from now on. seconds: above 0.
    void setInterval(double seconds);
    /// Names what the next load that begins is of, for the line.
    void announce(std::string address);
    /// A load under way waits for a delegate, until resume().
    void pause();
    void resume();

  private:
    struct Signals;
    enum class State { idle, counting, paused };

    void restart();
    void stop(State state);
    void expire();

    WebKitWebView* view_;
    double interval_;
    std::string announced_;
    std::string address_;  // Of the load under way.
    State state_ = State::idle;
    std::shared_ptr<Timer> timer_;
};

}  // namespace orvalo
