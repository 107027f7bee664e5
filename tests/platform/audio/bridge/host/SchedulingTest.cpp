#include <gtest/gtest.h>
#include <sched.h>
#include <sys/resource.h>

#include <chrono>
#include <csignal>
#include <thread>
#include <vector>

#include "tests/platform/audio/bridge/RealTimeThread.h"
#include "tests/platform/audio/bridge/ThreadOf.h"
#include "tests/platform/audio/bridge/host/BridgedEffect.h"
#include "tests/platform/audio/bridge/host/Leftovers.h"
#include "tests/testing/CapturedOutput.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

struct Scheduling {
    int policy = -1;
    int priority = -1;

    friend bool operator==(const Scheduling&, const Scheduling&) = default;
};

/// thread: its ID; 0 for the calling thread.
Scheduling schedulingOf(pid_t thread) {
    sched_param parameters{};
    const int policy = sched_getscheduler(thread);
    return sched_getparam(thread, &parameters) == 0 ? Scheduling{policy, parameters.sched_priority}
                                                    : Scheduling{};
}

/// The processors that the calling thread may run on.
std::vector<int> processorsOfThisThread() {
    cpu_set_t set;
    sched_getaffinity(0, sizeof(set), &set);
    std::vector<int> result;
    for (int processor = 0; processor < CPU_SETSIZE; ++processor) {
        if (CPU_ISSET(static_cast<unsigned>(processor), &set)) {
            result.push_back(processor);
        }
    }
    return result;
}

std::shared_ptr<BridgedAudioUnit> makeUnit() {
    return makeBridged(misbehavingWorld(), "urn:orvalo:misbehaving:segv");
}

/// Renders until the audio thread of each service has that scheduling; false after 30 s.
bool renderUntilScheduled(QuantumFeed& fed, Scheduling wanted) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (std::chrono::steady_clock::now() < deadline) {
        fed.next();
        bool allMatch = !services().empty();
        for (const auto process : services()) {
            const auto thread = threadOf(process, "effect-audio");
            allMatch = allMatch && thread != 0 && schedulingOf(thread) == wanted;
        }
        if (allMatch) {
            return true;
        }
    }
    return false;
}

/// Whether a service gets that priority, which it requests itself. In a namespace the user's limit
/// counts, also for root, which may raise it where it has all capabilities.
bool isGrantedToAService(int priority) {
    constexpr rlim_t kHighest = 10;
    const rlimit raised{kHighest, kHighest};
    setrlimit(RLIMIT_RTPRIO, &raised);
    rlimit limit{};
    getrlimit(RLIMIT_RTPRIO, &limit);
    return isRealTimeGranted() && limit.rlim_cur >= static_cast<rlim_t>(priority);
}

class BridgedScheduling : public ::testing::Test {
  protected:
    const bool isGranted_ = isRealTimeGranted();
    const Scheduling ofRenderThread_ =
        isGranted_ ? Scheduling{SCHED_FIFO, 5} : Scheduling{SCHED_OTHER, 0};
    const Scheduling ofService_ =
        isGrantedToAService(4) ? Scheduling{SCHED_FIFO, 4} : Scheduling{SCHED_OTHER, 0};
    const CapturedOutput error_{2};
};

TEST_F(BridgedScheduling, ServicesRunOneStepBelowTheRenderThreadAlsoAfterARestart) {
    const auto first = makeUnit();
    const auto second = makeUnit();
    first->setRenderingOffline(false);
    second->setRenderingOffline(false);
    auto fed = QuantumFeed([&](const AudioBlock& input, const AudioBlock& output) {
        first->render(input, output);
        second->render(input, output);
    });
    onRealTimeThread(5, [&] {
        EXPECT_TRUE(renderUntilScheduled(fed, ofService_));
        const auto before = services();
        ASSERT_EQ(before.size(), 2U);
        kill(*before.begin(), SIGKILL);
        while (services().size() != 2 || services() == before) {
            fed.next();
        }
        EXPECT_TRUE(renderUntilScheduled(fed, ofService_));
    });
}

TEST_F(BridgedScheduling, LeavesTheRenderThreadAsItIs) {
    const auto unit = makeUnit();
    unit->setRenderingOffline(false);
    auto fed = feed(*unit);
    onRealTimeThread(5, [&] {
        const auto processors = processorsOfThisThread();
        EXPECT_TRUE(renderUntilScheduled(fed, ofService_));
        EXPECT_EQ(schedulingOf(0), ofRenderThread_);
        EXPECT_EQ(processorsOfThisThread(), processors);
    });
}

TEST_F(BridgedScheduling, TheNextRenderThreadCountsWhenTheOutputIsReplaced) {
    const auto unit = makeUnit();
    unit->setRenderingOffline(false);
    auto fed = feed(*unit);
    onRealTimeThread(5, [&] { EXPECT_TRUE(renderUntilScheduled(fed, ofService_)); });
    std::thread([&] { EXPECT_TRUE(renderUntilScheduled(fed, {SCHED_OTHER, 0})); }).join();
}

TEST_F(BridgedScheduling, TheLowestPriorityIsShared) {
    const auto unit = makeUnit();
    unit->setRenderingOffline(false);
    auto fed = feed(*unit);
    onRealTimeThread(1, [&] {
        EXPECT_TRUE(renderUntilScheduled(
            fed, isGrantedToAService(1) ? Scheduling{SCHED_FIFO, 1} : Scheduling{SCHED_OTHER, 0}));
    });
}

TEST_F(BridgedScheduling, OfflineTheServiceHasNoRealTimePriority) {
    const auto unit = makeUnit();
    auto fed = feed(*unit);
    onRealTimeThread(5, [&] { EXPECT_TRUE(renderUntilScheduled(fed, {SCHED_OTHER, 0})); });
}

}  // namespace
