#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

#include "tests/platform/audio/bridge/host/FakeEffect.h"
#include "tests/platform/audio/bridge/host/Leftovers.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

TEST(End, LeavesNothingOfAnEffect) {
    const auto before = Leftovers::now();
    {
        FakeEffect effect("half:0");
        effect.render(10);
        // One for rendering, one for the control values.
        EXPECT_EQ(Leftovers::now().sharedMaps, before.sharedMaps + 2);
    }
    EXPECT_EQ(Leftovers::settled(before), before);
}

TEST(End, LeavesNothingOfServicesThatDied) {
    const auto before = Leftovers::now();
    auto limits = patientLimits();
    limits.deaths = 1000;
    {
        FakeEffect effect("half:0", limits);
        const auto during = Leftovers::now();
        for (int death = 0; death < 20; ++death) {
            const auto process = onlyService();
            kill(process, SIGKILL);
            while (isAlive(process)) {
                sched_yield();
            }
            effect.render(1);
            ASSERT_TRUE(effect.renderUntilWet());
            EXPECT_NE(onlyService(), process);
        }
        // The supervisor opens a folder now and then, to see what the service uses.
        EXPECT_TRUE(pollUntil([&during] {
            const auto now = Leftovers::now();
            return now.descriptors <= during.descriptors && now.sharedMaps <= during.sharedMaps &&
                   now.threads <= during.threads;
        }));
    }
    EXPECT_EQ(Leftovers::settled(before), before);
}

TEST(End, KillsAStoppedService) {
    const auto before = Leftovers::now();
    {
        const FakeEffect effect("half:0");
        kill(onlyService(), SIGSTOP);
    }
    EXPECT_EQ(Leftovers::settled(before), before);
}

TEST(End, KillsAServiceThatLeftItsProcessGroup) {
    const auto before = Leftovers::now();
    {
        FakeEffect effect("other-group:1");
        effect.render(1);
    }
    EXPECT_EQ(Leftovers::settled(before), before);
}

TEST(End, AnEffectCanBeDestroyedAtAnyMomentOfARestart) {
    const auto before = Leftovers::now();
    for (int round = 0; round < 40; ++round) {
        FakeEffect effect("half:0");
        kill(onlyService(), SIGKILL);
        std::this_thread::sleep_for(std::chrono::microseconds(round * 100));
    }
    EXPECT_EQ(Leftovers::settled(before), before);
}

TEST(End, AnEffectCanBeDestroyedAfterItWasGivenUp) {
    const CapturedOutput error(2);
    const auto before = Leftovers::now();
    {
        FakeEffect effect("segv:1:always");
        effect.render(5);
        EXPECT_TRUE(effect.supervisor().hasGivenUp());
        EXPECT_EQ(Leftovers::now().children.size(), 0U);
        EXPECT_EQ(Leftovers::now().sharedMaps, before.sharedMaps);
    }
    EXPECT_EQ(Leftovers::settled(before), before);
}

TEST(End, KillsTheChildrenOfAService) {
    const CapturedOutput error(2);
    FakeEffect effect("child:1");
    effect.render(1);
    effect.supervisor().perform(bridge::SetContextName{.number = 0, .name = "n"});
    while (error.text().find(">: child ") == std::string::npos) {
        sched_yield();
    }
    const auto all = descendants();
    // bubblewrap twice, the service, and its child.
    ASSERT_EQ(all.size(), 4U);
    kill(onlyService(), SIGKILL);
    EXPECT_TRUE(pollUntil([&all] { return std::ranges::none_of(all, isAlive); }));
}

TEST(End, AFailedStartLeavesNothing) {
    const CapturedOutput error(2);
    const auto before = Leftovers::now();
    for (const auto* role : {"refuse:0", "abort:0:always", "exit:0:always"}) {
        EXPECT_ANY_THROW(FakeEffect{role}) << role;
    }
    EXPECT_EQ(Leftovers::settled(before), before);
}

}  // namespace
