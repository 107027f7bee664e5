#pragma once

#include <string>

// NOLINTNEXTLINE(bugprone-reserved-identifier): WebKit's own.
using WebKitPolicyDecision = struct _WebKitPolicyDecision;

namespace orvalo {

/// A decision that the web engine waits for, which can be answered once, or stay open until the
/// view's end. Main thread.
class PolicyDecision {
  public:
    /// engine: the engine's side, null for a decision that the engine knows nothing of. It is kept,
    /// since the engine goes ahead with a decision that nobody holds. handler: what a second answer
    /// names.
    PolicyDecision(WebKitPolicyDecision* engine, std::string handler);
    ~PolicyDecision() { end(); }
    PolicyDecision(const PolicyDecision&) = delete;
    PolicyDecision& operator=(const PolicyDecision&) = delete;

    /// Lets the engine go ahead or has it stay. After end() nothing; a second answer is a fatal
    /// error.
    void answer(bool isAllowed);
    /// Gives up an open decision, refusing it.
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
