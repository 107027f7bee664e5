#include "platform/audio/bridge/host/ProcessorHold.h"

namespace orvalo {

int ProcessorHold::keep(Time now) noexcept {
    const int processor = sched_getcpu();
    if (isHolding_) {
        if (now >= until_) {
            letGo();
        }
    } else if (processor >= 0) {
        hold(processor);
        until_ = now + kLength;
    }
    return processor;
}

void ProcessorHold::hold(int processor) noexcept {
    CPU_ZERO(&held_);
    CPU_SET(static_cast<unsigned>(processor), &held_);
    isHolding_ = sched_getaffinity(0, sizeof(before_), &before_) == 0 &&
                 sched_setaffinity(0, sizeof(held_), &held_) == 0;
}

void ProcessorHold::letGo() noexcept {
    isHolding_ = false;
    cpu_set_t now;
    if (sched_getaffinity(0, sizeof(now), &now) == 0 && CPU_EQUAL(&now, &held_)) {
        sched_setaffinity(0, sizeof(before_), &before_);
    }
}

}  // namespace orvalo
