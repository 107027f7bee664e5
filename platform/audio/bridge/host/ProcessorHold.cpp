#include "platform/audio/bridge/host/ProcessorHold.h"

#include <unistd.h>

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
    thread_ = gettid();
    isHolding_ = sched_getaffinity(thread_, sizeof(before_), &before_) == 0 &&
                 sched_setaffinity(thread_, sizeof(held_), &held_) == 0;
}

void ProcessorHold::letGo() noexcept {
    cpu_set_t now;
    // The thread may have ended meanwhile.
    if (isHolding_ && sched_getaffinity(thread_, sizeof(now), &now) == 0 &&
        CPU_EQUAL(&now, &held_)) {
        sched_setaffinity(thread_, sizeof(before_), &before_);
    }
    isHolding_ = false;
}

}  // namespace orvalo
