#include "platform/web/PolicyDecision.h"

#include <utility>

#include "platform/foundation/FatalError.h"
#include "platform/web/WebKit.h"

namespace orvalo {

PolicyDecision::PolicyDecision(WebKitPolicyDecision* engine, std::string handler)
    : engine_(engine), handler_(std::move(handler)) {
    if (engine_ != nullptr) {
        g_object_ref(engine_);
    }
}

void PolicyDecision::answer(bool isAllowed) {
    switch (state_) {
        case State::open:
            state_ = State::answered;
            settle(isAllowed);
            return;
        case State::answered:
            fatalError(handler_ + " was called more than once.");
        case State::ended:
            return;
    }
}

void PolicyDecision::end() {
    if (state_ == State::open) {
        state_ = State::ended;
        settle(false);
    }
}

void PolicyDecision::settle(bool isAllowed) {
    if (engine_ == nullptr) {
        return;
    }
    if (isAllowed) {
        lateWebKit(webkit_policy_decision_use)(engine_);
    } else {
        lateWebKit(webkit_policy_decision_ignore)(engine_);
    }
    g_object_unref(std::exchange(engine_, nullptr));
}

}  // namespace orvalo
