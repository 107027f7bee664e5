#include "platform/audio/output/RealTimePriority.h"

#include <glib.h>
#include <pthread.h>
#include <sched.h>

namespace orvalo {

namespace {

// Below the sound servers' own threads, which run at 10 to 20 by default with what they serve
// some steps lower.
constexpr int kPriority = 5;

}  // namespace

void becomeRenderThread(const char* name) noexcept {
    pthread_setname_np(pthread_self(), name);
    sched_param parameters{};
    parameters.sched_priority = kPriority;
    const int refusal = pthread_setschedparam(pthread_self(), SCHED_FIFO, &parameters);
    if (refusal != 0) {
        g_debug("The thread %s runs without real-time priority: %s.", name, g_strerror(refusal));
    }
}

}  // namespace orvalo
