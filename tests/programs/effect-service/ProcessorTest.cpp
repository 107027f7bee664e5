#include <gtest/gtest.h>
#include <sched.h>

#include <chrono>

#include "tests/platform/audio/bridge/RealTimeThread.h"
#include "tests/platform/audio/bridge/ThreadOf.h"
#include "tests/programs/effect-service/HostedEffect.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

constexpr std::chrono::seconds kPatience{30};

cpu_set_t onlyOn(int processor) {
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(static_cast<unsigned>(processor), &set);
    return set;
}

class ServiceProcessor : public ::testing::Test {
  protected:
    void SetUp() override {
        sched_getaffinity(0, sizeof(all_), &all_);
        effect_.mustInstantiate();
    }

    /// Renders until the service's audio thread may be on these processors only.
    bool comesTo(const cpu_set_t& wanted) {
        const auto deadline = std::chrono::steady_clock::now() + kPatience;
        while (std::chrono::steady_clock::now() < deadline) {
            effect_.renderQuantum(64);
            const auto thread = threadOf(effect_.service.id(), "effect-audio");
            cpu_set_t set;
            if (sched_getaffinity(thread, sizeof(set), &set) == 0 && CPU_EQUAL(&set, &wanted)) {
                return true;
            }
        }
        return false;
    }

    /// Renders until the service's audio thread has that policy and priority.
    bool comesTo(int policy, int priority) {
        const auto deadline = std::chrono::steady_clock::now() + kPatience;
        while (std::chrono::steady_clock::now() < deadline) {
            effect_.renderQuantum(64);
            const auto thread = threadOf(effect_.service.id(), "effect-audio");
            sched_param parameters{};
            if (sched_getscheduler(thread) == policy && sched_getparam(thread, &parameters) == 0 &&
                parameters.sched_priority == priority) {
                return true;
            }
        }
        return false;
    }
    void setHost(int policy, int priority) {
        effect_.audio().control().schedulingPolicy = policy;
        effect_.audio().control().schedulingPriority = priority;
    }

    HostedEffect effect_{ORVALO_ZOO, "urn:orvalo:zoo:probe"};
    cpu_set_t all_{};
};

TEST_F(ServiceProcessor, IsSharedUnlessThePriorityIsRefused) {
    const auto first = sched_getcpu();
    effect_.audio().control().processor = first;
    ASSERT_TRUE(comesTo(onlyOn(first)));
    const bool isGranted = isRealTimeGranted();
    setHost(SCHED_FIFO, 5);
    EXPECT_TRUE(comesTo(isGranted ? onlyOn(first) : all_));
    EXPECT_TRUE(comesTo(isGranted ? SCHED_FIFO : SCHED_OTHER, isGranted ? 5 : 0));
    setHost(SCHED_FIFO, 1000);
    EXPECT_TRUE(comesTo(all_)) << "No thread can have that one.";
    setHost(SCHED_OTHER, 0);
    EXPECT_TRUE(comesTo(onlyOn(first)));
    EXPECT_TRUE(comesTo(SCHED_OTHER, 0));
}

TEST_F(ServiceProcessor, FollowsTheHostsRenderThread) {
    for (int processor = 0; processor < CPU_SETSIZE; ++processor) {
        if (CPU_ISSET(static_cast<unsigned>(processor), &all_)) {
            effect_.audio().control().processor = processor;
            EXPECT_TRUE(comesTo(onlyOn(processor))) << processor;
        }
    }
    effect_.audio().control().processor = -1;
    EXPECT_TRUE(comesTo(all_)) << "anywhere again";
}

TEST_F(ServiceProcessor, IsAnywhereWhenThereIsNoSuchProcessor) {
    effect_.audio().control().processor = CPU_SETSIZE;
    EXPECT_TRUE(comesTo(all_));
    effect_.audio().control().processor = CPU_SETSIZE - 1;
    EXPECT_TRUE(comesTo(all_));
}

}  // namespace
