#pragma once

#include <string>

// NOLINTNEXTLINE(bugprone-reserved-identifier): WebKit's own.
using WebKitPolicyDecision = struct _WebKitPolicyDecision;

namespace orvalo {

/// A decision that the web engine waits for. It can be answered once, or stay open until the view's
/// end. Main thread.
class PolicyDecision {
  public:
    /// engine: the engine's object; null for a decision without one. It is kept alive because its
    /// destruction would allow the navigation. handler: the name in the error for a second answer.
    PolicyDecision(WebKitPolicyDecision* engine, std::string handler);
    ~PolicyDecision() { end(); }
    PolicyDecision(const PolicyDecision&) = delete;
    PolicyDecision& operator=(const PolicyDecision&) = delete;

    /// Allows or refuses the navigation. Does nothing after end(). A second answer is a fatal
    /// error.
    void answer(bool isAllowed);
    /// Refuses a decision that is still open.
    void end();

    bool isOpen() const { return state_ == State::open; }

  private:
    enum class State { open, answered, ended };

    void settle(bool isAllowed);

    WebKitPolicyDecision* engine_;
    std::string handler_;
    State state_ = State::open;
};

}  // namespace orvalo
