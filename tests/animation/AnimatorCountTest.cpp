#include <gtest/gtest.h>

#include <csignal>
#include <limits>
#include <memory>
#include <thread>
#include <vector>

#include "animation/Animator.h"

namespace orvalo {
namespace {

TEST(AnimatorCount, CountsLiveAnimators) {
    const std::int64_t before = Animator::classCount;
    {
        const auto one = std::make_shared<Animator>();
        EXPECT_EQ(Animator::classCount, before + 1);
        const auto other = std::make_shared<Animator>(0.0f, 1.0f, 3);
        EXPECT_EQ(Animator::classCount, before + 2);
    }
    EXPECT_EQ(Animator::classCount, before);
}

TEST(AnimatorCount, CountsCorrectlyOnSeveralThreads) {
    const std::int64_t before = Animator::classCount;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([made = std::vector{std::make_shared<Animator>()}]() mutable {
            for (int more = 0; more < 5000; ++more) {
                made.push_back(std::make_shared<Animator>());
            }
            made.clear();
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(Animator::classCount, before);
}

TEST(AnimatorCountDeathTest, OverflowEndsTheProgram) {
    EXPECT_EXIT(
        {
            Animator::classCount = std::numeric_limits<std::int64_t>::max();
            const Animator oneTooMany;
        },
        ::testing::KilledBySignal(SIGABRT), "^Fatal error: Integer overflow in an addition.\n$");
    EXPECT_EXIT(
        {
            const auto last = std::make_unique<Animator>();
            Animator::classCount = std::numeric_limits<std::int64_t>::min();
        },
        ::testing::KilledBySignal(SIGABRT), "^Fatal error: Integer overflow in a subtraction.\n$");
}

}  // namespace
}  // namespace orvalo
