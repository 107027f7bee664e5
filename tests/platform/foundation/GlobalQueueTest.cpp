#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <csignal>
#include <cstddef>
#include <latch>
#include <stdexcept>
#include <thread>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/RunLoop.h"

namespace orvalo {
namespace {

TEST(GlobalQueue, RunsItemsConcurrentlyOffTheMainThread) {
    // Each item waits for all others, so they end only when all run concurrently.
    constexpr int items = 64;
    std::barrier together(items);
    std::latch ended(items);
    std::atomic<int> onMainThread = 0;
    for (int item = 0; item < items; ++item) {
        DispatchQueue::global()->async([&] {
            together.arrive_and_wait();
            onMainThread += RunLoop::isMainThread() ? 1 : 0;
            ended.count_down();
        });
    }
    ended.wait();
    EXPECT_EQ(onMainThread, 0);
}

TEST(GlobalQueue, RunsEveryItemOnce) {
    constexpr int threads = 8;
    constexpr int itemsEach = 2'000;
    std::atomic<int> runs = 0;
    std::latch ended(std::ptrdiff_t{threads} * itemsEach);
    for (int thread = 0; thread < threads; ++thread) {
        DispatchQueue::global()->async([&] {
            for (int item = 0; item < itemsEach; ++item) {
                DispatchQueue::global()->async([&] {
                    ++runs;
                    ended.count_down();
                });
            }
        });
    }
    ended.wait();
    EXPECT_EQ(runs, threads * itemsEach);
}

TEST(GlobalQueue, SyncRunsOnTheCallersThread) {
    const auto self = std::this_thread::get_id();
    std::thread::id seen;
    DispatchQueue::global()->sync([&] { seen = std::this_thread::get_id(); });
    EXPECT_EQ(seen, self);
}

TEST(GlobalQueue, SyncFromItsOwnWorkEnds) {
    std::latch ended(1);
    DispatchQueue::global()->async(
        [&] { DispatchQueue::global()->sync([&] { ended.count_down(); }); });
    ended.wait();
}

TEST(GlobalQueueDeathTest, AnExceptionOutOfAnItemEndsTheProgram) {
    EXPECT_EXIT(
        {
            std::latch never(1);
            DispatchQueue::global()->async([] { throw std::runtime_error("out of an item"); });
            never.wait();
        },
        ::testing::KilledBySignal(SIGABRT), "out of an item");
}

}  // namespace
}  // namespace orvalo
