#pragma once

#include <cstdint>
#include <ctime>

namespace orvalo::bench {

inline std::int64_t nanosecondsOf(clockid_t clock) {
    constexpr std::int64_t nanosecondsInSecond = 1'000'000'000;
    timespec now{};
    clock_gettime(clock, &now);
    return now.tv_sec * nanosecondsInSecond + now.tv_nsec;
}

/// Monotonic time in ns, the same for all processes.
inline std::int64_t monotonicNanoseconds() {
    return nanosecondsOf(CLOCK_MONOTONIC);
}

/// Processor time of the calling thread, in ns.
inline std::int64_t threadNanoseconds() {
    return nanosecondsOf(CLOCK_THREAD_CPUTIME_ID);
}

inline double inSeconds(std::int64_t nanoseconds) {
    return static_cast<double>(nanoseconds) * 1e-9;
}

}  // namespace orvalo::bench
