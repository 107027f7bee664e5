#include "bench/live/BareSleeper.h"

#include <pthread.h>

#include <algorithm>
#include <ctime>

#include "bench/measuring/Clocks.h"
#include "platform/audio/output/RealTimePriority.h"

namespace orvalo::bench {

BareSleeper::BareSleeper(std::int64_t quantumNanoseconds)
    : thread_([this, quantumNanoseconds] { run(quantumNanoseconds); }) {}

BareSleeper::~BareSleeper() {
    isOver_ = true;
    thread_.join();
}

void BareSleeper::run(std::int64_t quantum) {
    constexpr std::int64_t nanosecondsInSecond = 1'000'000'000;
    pthread_setname_np(pthread_self(), "bare-sleeper");
    requestRealTimePriority();
    auto due = monotonicNanoseconds();
    while (!isOver_) {
        due += quantum;
        const timespec until{due / nanosecondsInSecond, due % nanosecondsInSecond};
        clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr);
        const auto late = monotonicNanoseconds() - due;
        latest_ = std::max(latest_.load(), late);
        const auto missed = late / quantum;
        late_ += missed > 0 ? 1 : 0;
        due += missed * quantum;
    }
}

}  // namespace orvalo::bench
