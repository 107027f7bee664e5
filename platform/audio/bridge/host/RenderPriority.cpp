#include "platform/audio/bridge/host/RenderPriority.h"

namespace orvalo {

namespace {

/// The lead that the thread has; none when both are 0.
struct Lead {
    int given = 0;
    int taken = 0;
};

/// The priority that the thread was given, if it goes above that; 0 when that is refused.
int givenPriority(int priority) noexcept {
    static thread_local constinit Lead lead;
    if (priority == lead.taken) {
        return lead.given;
    }
    // The policy and its flags stay.
    const sched_param above{.sched_priority = priority + 1};
    if (sched_setparam(0, &above) != 0) {
        return 0;
    }
    lead = {.given = priority, .taken = priority + 1};
    return priority;
}

}  // namespace

EffectScheduling takeLead() noexcept {
    const int flagged = sched_getscheduler(0);
    sched_param now{};
    if (flagged < 0 || sched_getparam(0, &now) != 0) {
        return {};
    }
    const int policy = flagged & ~SCHED_RESET_ON_FORK;
    if (policy != SCHED_FIFO && policy != SCHED_RR) {
        return {.policy = policy, .priority = now.sched_priority};
    }
    if (const int given = givenPriority(now.sched_priority); given != 0) {
        return {.policy = policy, .priority = given};
    }
    const bool hasBelow = now.sched_priority > sched_get_priority_min(policy);
    return {.policy = policy,
            .priority = now.sched_priority - (hasBelow ? 1 : 0),
            .maySharePlace = hasBelow};
}

}  // namespace orvalo
