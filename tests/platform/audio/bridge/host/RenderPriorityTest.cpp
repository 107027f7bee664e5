#include "platform/audio/bridge/host/RenderPriority.h"

#include <gtest/gtest.h>

#include "tests/platform/audio/bridge/RealTimeThread.h"

namespace {

using namespace orvalo;
using orvalo::testing::isRealTimeGranted;
using orvalo::testing::onRealTimeThread;

int ownPriority() {
    sched_param now{};
    sched_getparam(0, &now);
    return now.sched_priority;
}

void expectLead(const EffectScheduling& effect, int policy, int priority) {
    EXPECT_EQ(effect.policy, policy);
    EXPECT_EQ(effect.priority, priority);
    EXPECT_TRUE(effect.maySharePlace);
}

// Each test's threads are its own, and take what they were given along.

TEST(RenderPriority, IsAStepAboveTheOneThatItLeavesToTheEffect) {
    const bool isGranted = onRealTimeThread(5, [] {
        const bool isRealTime = ownPriority() == 5;
        for (int effect = 0; effect < 3; ++effect) {
            expectLead(takeLead(), isRealTime ? SCHED_FIFO : SCHED_OTHER, isRealTime ? 5 : 0);
            EXPECT_EQ(ownPriority(), isRealTime ? 6 : 0) << "the same for each";
        }
    });
    onRealTimeThread(
        isGranted ? 7 : 0,
        [isGranted] {
            expectLead(takeLead(), isGranted ? SCHED_RR : SCHED_OTHER, isGranted ? 7 : 0);
            EXPECT_EQ(ownPriority(), isGranted ? 8 : 0);
        },
        isGranted ? SCHED_RR : SCHED_OTHER);
}

TEST(RenderPriority, IsTakenAnewWhenSomebodyHasChangedIt) {
    const bool isGranted = isRealTimeGranted();
    onRealTimeThread(5, [isGranted] {
        takeLead();
        for (const int priority : {5, 3, 8}) {
            const sched_param given{.sched_priority = isGranted ? priority : 0};
            sched_setparam(0, &given);
            expectLead(takeLead(), isGranted ? SCHED_FIFO : SCHED_OTHER, given.sched_priority);
            EXPECT_EQ(ownPriority(), isGranted ? priority + 1 : 0);
        }
    });
}

TEST(RenderPriority, KeepsTheFlagsOfThePolicy) {
    const bool isGranted = isRealTimeGranted();
    const int policy = isGranted ? SCHED_FIFO : SCHED_OTHER;
    onRealTimeThread(
        isGranted ? 5 : 0,
        [isGranted, policy] {
            expectLead(takeLead(), policy, isGranted ? 5 : 0);
            EXPECT_EQ(sched_getscheduler(0), policy | SCHED_RESET_ON_FORK);
        },
        policy | SCHED_RESET_ON_FORK);
}

TEST(RenderPriority, StaysWhereNoneIsAbove) {
    const int most = sched_get_priority_max(SCHED_FIFO);
    onRealTimeThread(most, [most] {
        const bool isRealTime = ownPriority() == most;
        expectLead(takeLead(), isRealTime ? SCHED_FIFO : SCHED_OTHER, isRealTime ? most - 1 : 0);
        EXPECT_EQ(ownPriority(), isRealTime ? most : 0);
    });
}

TEST(RenderPriority, OfAnOrdinaryThreadIsLeftAlone) {
    onRealTimeThread(
        0,
        [] {
            expectLead(takeLead(), SCHED_OTHER, 0);
            EXPECT_EQ(sched_getscheduler(0), SCHED_OTHER);
        },
        SCHED_OTHER);
}

}  // namespace
