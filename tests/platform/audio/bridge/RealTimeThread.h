#pragma once

#include <pthread.h>
#include <sched.h>

#include <thread>

namespace orvalo::testing {

/// Runs the body on a thread of its own that is scheduled so, as a device's is, where the system
/// grants it. Whether it does.
template <typename Body>
bool onRealTimeThread(int priority, Body body, int policy = SCHED_FIFO) {
    bool isGranted = false;
    std::thread([&] {
        const sched_param parameters{.sched_priority = priority};
        isGranted = sched_setscheduler(0, policy, &parameters) == 0;
        body();
    }).join();
    return isGranted;
}

/// Whether the system lets this user's threads have such a priority.
inline bool isRealTimeGranted() {
    return onRealTimeThread(5, [] {});
}

}  // namespace orvalo::testing
