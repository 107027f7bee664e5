// Animators on their own timers and real run loops. TickingTest.cpp has what they share with other
// objects that tick.

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "animation/Animator.h"
#include "tests/platform/foundation/DueTimers.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo {
namespace {

using Clock = std::chrono::steady_clock;
using orvalo::testing::waitUntil;
using orvalo::testing::waitUntilDue;

/// A run of `frames` frames from 0 by ones.
std::shared_ptr<Animator> animatorOf(std::int64_t frames, float interval = 0.001f) {
    return std::make_shared<Animator>(0.0f, static_cast<float>(frames), frames, interval);
}

/// Runs the loop for `count` firings of a second timer of a millisecond.
void serveFirings(int count) {
    int firings = 0;
    const auto timer = Timer::scheduledTimer(0.001, [&firings](const auto&) { ++firings; });
    EXPECT_TRUE(waitUntil([&] { return firings >= count; }));
    timer->invalidate();
}

void runsToItsEnd() {
    const auto thread = std::this_thread::get_id();
    const auto animator = animatorOf(5);
    std::vector<float> before;
    std::vector<float> ends;
    animator->onAnimation = [&](const auto&, float value) {
        EXPECT_EQ(std::this_thread::get_id(), thread);
        before.push_back(value);
    };
    animator->onFinished = [&](const auto&, float value) { ends.push_back(value); };
    animator->start();
    EXPECT_TRUE(waitUntil([&] { return animator->isFinished(); }));
    EXPECT_EQ(before, (std::vector<float>{0, 1, 2, 3, 4}));
    serveFirings(5);
    EXPECT_EQ(ends, std::vector<float>{5});
}

TEST(AnimatorTimer, StepsARunToItsEnd) {
    runsToItsEnd();
}

TEST(AnimatorTimer, StepsARunOnTheThreadThatStartsIt) {
    std::thread(runsToItsEnd).join();
}

TEST(AnimatorTimer, StepsOncePerInterval) {
    constexpr std::chrono::milliseconds period(20);
    const auto animator = animatorOf(4, 0.02f);
    const auto start = Clock::now();
    int steps = 0;
    animator->onAnimation = [&](const auto&, float) {
        ++steps;
        // With a tolerance of half a period for the difference of the clocks.
        EXPECT_GE(Clock::now() - start, steps * period - period / 2);
    };
    animator->start();
    EXPECT_TRUE(waitUntil([&] { return animator->isFinished(); }));
    EXPECT_EQ(steps, 4);
}

TEST(AnimatorTimer, DoesNothingWithoutARun) {
    const auto animator = std::make_shared<Animator>();
    int calls = 0;
    animator->onAnimation = [&calls](const auto&, float) { ++calls; };
    animator->onFinished = [&calls](const auto&, float) { ++calls; };
    animator->start();
    serveFirings(10);
    EXPECT_EQ(calls, 0);
    // The timer still runs and steps a run that is set up now.
    animator->setup(0, 1, 1);
    EXPECT_TRUE(waitUntil([&] { return animator->isFinished(); }));
    EXPECT_EQ(calls, 2);
}

TEST(AnimatorTimer, MayBeRestartedFromItsCallback) {
    const auto animator = animatorOf(2);
    std::vector<float> ends;
    animator->onFinished = [&ends](const auto& self, float value) {
        ends.push_back(value);
        if (ends.size() < 3) {
            self->setup(value, value * 10, 2, 0.001f);
            self->start();
        }
    };
    animator->start();
    EXPECT_TRUE(waitUntil([&] { return ends.size() == 3; }));
    EXPECT_EQ(ends, (std::vector<float>{2, 20, 200}));
    serveFirings(5);
    EXPECT_TRUE(animator->isFinished());
}

TEST(AnimatorTimer, CallbackMayStopAnotherAnimator) {
    const auto first = animatorOf(100);
    const auto second = animatorOf(100);
    int steps = 0;
    second->onAnimation = [&steps](const auto&, float) { ++steps; };
    first->onAnimation = [&second](const auto&, float) { second->stop(); };
    first->start();
    second->start();
    ASSERT_TRUE(waitUntilDue(2));
    EXPECT_TRUE(waitUntil([&] { return first->getValue() >= 5; }));
    EXPECT_TRUE(second->isFinished());
    EXPECT_EQ(steps, 0);
    first->stop();
}

TEST(AnimatorTimer, StepsAnimatorsInOrderOfTheirStarts) {
    std::string order;
    std::vector<std::shared_ptr<Animator>> animators;
    for (const char name : {'a', 'b', 'c'}) {
        animators.push_back(animatorOf(1, 0.02f));
        animators.back()->onFinished = [&order, name](const auto&, float) { order += name; };
        animators.back()->start();
    }
    ASSERT_TRUE(waitUntilDue(3));
    EXPECT_TRUE(waitUntil([&] { return order.size() == 3; }));
    EXPECT_EQ(order, "abc");
}

}  // namespace
}  // namespace orvalo
