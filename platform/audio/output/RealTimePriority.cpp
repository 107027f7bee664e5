#include "platform/audio/output/RealTimePriority.h"

#include <glib.h>
#include <pthread.h>
#include <sched.h>

namespace orvalo {

namespace {

// Below the sound servers' threads, which run at 10 to 20, and their clients' threads just below.
constexpr int kPriority = 5;

}  // namespace

void requestRealTimePriority() noexcept {
    sched_param parameters{};
    parameters.sched_priority = kPriority;
    const int refusal = pthread_setschedparam(pthread_self(), SCHED_FIFO, &parameters);
    if (refusal != 0) {
        g_debug("A render thread runs without real-time priority: %s.", g_strerror(refusal));
    }
}

}  // namespace orvalo
