// How the render thread and the effect's are scheduled, as the system sees it.

#include <gtest/gtest.h>
#include <sched.h>

#include <chrono>
#include <csignal>

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

/// thread: 0 is the calling one.
Scheduling schedulingOf(pid_t thread) {
    sched_param parameters{};
    const int policy = sched_getscheduler(thread);
    return sched_getparam(thread, &parameters) == 0 ? Scheduling{policy, parameters.sched_priority}
                                                    : Scheduling{};
}

std::shared_ptr<BridgedAudioUnit> makeUnit() {
    return makeBridged(misbehavingWorld(), "urn:orvalo:misbehaving:segv");
}

/// Renders until the audio thread of each effect is scheduled so.
bool bringsEffectsTo(QuantumFeed& fed, Scheduling wanted) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (std::chrono::steady_clock::now() < deadline) {
        fed.next();
        bool isSo = !children().empty();
        for (const auto process : children()) {
            const auto thread = threadOf(process, "effect-audio");
            isSo = isSo && thread != 0 && schedulingOf(thread) == wanted;
        }
        if (isSo) {
            return true;
        }
    }
    return false;
}

class BridgedScheduling : public ::testing::Test {
  protected:
    const bool isGranted_ = isRealTimeGranted();
    const Scheduling given_ = isGranted_ ? Scheduling{SCHED_FIFO, 5} : Scheduling{SCHED_OTHER, 0};
    const Scheduling above_ = isGranted_ ? Scheduling{SCHED_FIFO, 6} : given_;
    const CapturedOutput error_{2};
};

TEST_F(BridgedScheduling, GivesTheEffectThePriorityOfTheRenderThreadWhichGoesAbove) {
    const auto first = makeUnit();
    const auto second = makeUnit();
    first->setRenderingOffline(false);
    second->setRenderingOffline(false);
    auto fed = QuantumFeed([&](const AudioBlock& input, const AudioBlock& output) {
        first->render(input, output);
        second->render(input, output);
    });
    onRealTimeThread(5, [&] {
        EXPECT_TRUE(bringsEffectsTo(fed, given_));
        EXPECT_EQ(schedulingOf(0), above_);
        const auto before = children();
        kill(*before.begin(), SIGKILL);
        while (children().size() != 2 || children() == before) {
            fed.next();
        }
        EXPECT_TRUE(bringsEffectsTo(fed, given_)) << "the next process, too";
        EXPECT_EQ(schedulingOf(0), above_);
    });
}

TEST_F(BridgedScheduling, FollowsWhatOthersMakeOfTheRenderThread) {
    const auto unit = makeUnit();
    unit->setRenderingOffline(false);
    auto fed = feed(*unit);
    onRealTimeThread(5, [&] {
        EXPECT_TRUE(bringsEffectsTo(fed, given_));
        const sched_param none{};
        sched_setscheduler(0, SCHED_OTHER, &none);
        EXPECT_TRUE(bringsEffectsTo(fed, {SCHED_OTHER, 0}));
        const sched_param parameters{.sched_priority = given_.priority};
        sched_setscheduler(0, given_.policy, &parameters);
        EXPECT_TRUE(bringsEffectsTo(fed, given_));
        EXPECT_EQ(schedulingOf(0), above_);
    });
}

TEST_F(BridgedScheduling, OfAThreadThatRendersOfflineIsItsOwn) {
    const auto unit = makeUnit();
    auto fed = feed(*unit);
    onRealTimeThread(5, [&] {
        EXPECT_TRUE(bringsEffectsTo(fed, {SCHED_OTHER, 0}));
        EXPECT_EQ(schedulingOf(0), given_);
    });
}

}  // namespace
