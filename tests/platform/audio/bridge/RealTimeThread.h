#pragma once

#include <sched.h>

#include <thread>

namespace orvalo::testing {

/// Runs the body on a new thread, with that scheduling where the system grants it. Returns whether
/// the system has granted it.
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

/// Whether the system grants this user real-time priorities.
inline bool isRealTimeGranted() {
    return onRealTimeThread(5, [] {});
}

}  // namespace orvalo::testing
