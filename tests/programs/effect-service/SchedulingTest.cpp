#include <gtest/gtest.h>
#include <sched.h>

#include <cerrno>
#include <chrono>

#include "tests/platform/audio/bridge/RealTimeThread.h"
#include "tests/platform/audio/bridge/ThreadOf.h"
#include "tests/programs/effect-service/HostedEffect.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

constexpr std::chrono::seconds kPatience{30};
constexpr int kImpossiblePriority = 1000;

class ServiceScheduling : public ::testing::Test {
  protected:
    void SetUp() override { effect_.mustInstantiate(); }

    void request(int policy, int priority) {
        effect_.audio().control().schedulingPolicy = policy;
        effect_.audio().control().schedulingPriority = priority;
    }
    /// Renders until the service's audio thread has that policy and priority; false after 30 s.
    bool reaches(int policy, int priority) {
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

    HostedEffect effect_{ORVALO_ZOO, "urn:orvalo:zoo:probe"};
};

TEST_F(ServiceScheduling, IsWhatTheHostRequestsWhereTheSystemGrantsIt) {
    const bool isGranted = isRealTimeGranted();
    request(SCHED_FIFO, 5);
    EXPECT_TRUE(reaches(isGranted ? SCHED_FIFO : SCHED_OTHER, isGranted ? 5 : 0));
    request(SCHED_OTHER, 0);
    EXPECT_TRUE(reaches(SCHED_OTHER, 0));
}

TEST_F(ServiceScheduling, ARefusalIsToldToTheHost) {
    effect_.renderQuantum(16);
    EXPECT_EQ(effect_.audio().control().schedulingError, 0);
    request(SCHED_FIFO, kImpossiblePriority);
    effect_.renderQuantum(16);
    EXPECT_EQ(effect_.audio().control().schedulingError, EINVAL);
    EXPECT_EQ(effect_.service.standardError(), "");
}

}  // namespace
