#include <gtest/gtest.h>

#include <csignal>
#include <latch>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/RunLoop.h"

namespace orvalo {
namespace {

constexpr const char* endsForSync =
    "^Fatal error: sync on the queue 'com.example.queue' from its own work would never end.\n$";

TEST(SerialQueue, HasItsLabel) {
    EXPECT_EQ(DispatchQueue::serial("com.example.queue")->label(), "com.example.queue");
}

TEST(SerialQueue, RunsItemsInOrderOffTheMainThread) {
    constexpr int items = 10'000;
    const auto queue = DispatchQueue::serial("com.example.queue");
    int next = 0;
    int onMainThread = 0;
    for (int item = 0; item < items; ++item) {
        queue->async([&next, &onMainThread, item] {
            next += next == item ? 1 : 0;
            onMainThread += RunLoop::isMainThread() ? 1 : 0;
        });
    }
    int seen = 0;
    queue->sync([&] { seen = next; });
    EXPECT_EQ(seen, items);
    EXPECT_EQ(onMainThread, 0);
}

TEST(SerialQueue, SyncRunsOnTheCallersThread) {
    const auto queue = DispatchQueue::serial("com.example.queue");
    std::thread::id seen;
    queue->sync([&] { seen = std::this_thread::get_id(); });
    EXPECT_EQ(seen, std::this_thread::get_id());
    queue->async([] {});
    queue->sync([&] { seen = {}; });
    EXPECT_EQ(seen, std::thread::id());
}

class SerialQueueOfManyThreads : public ::testing::TestWithParam<int> {};

TEST_P(SerialQueueOfManyThreads, RunsOneItemAtATimeAndLosesNone) {
    constexpr int itemsEach = 2'000;
    const int threads = GetParam();
    const auto queue = DispatchQueue::serial("com.example.queue");
    int inside = 0;
    int overlaps = 0;
    int runs = 0;
    const auto work = [&] {
        overlaps += inside++ == 0 ? 0 : 1;
        ++runs;
        --inside;
    };
    std::vector<std::thread> submitters;
    submitters.reserve(8);
    for (int thread = 0; thread < threads; ++thread) {
        submitters.emplace_back([&, thread] {
            for (int item = 0; item < itemsEach; ++item) {
                if ((item + thread) % 3 == 0) {
                    queue->sync(work);
                } else {
                    queue->async(work);
                }
            }
        });
    }
    for (auto& submitter : submitters) {
        submitter.join();
    }
    queue->sync([] {});
    EXPECT_EQ(runs, threads * itemsEach);
    EXPECT_EQ(overlaps, 0);
}

INSTANTIATE_TEST_SUITE_P(Threads, SerialQueueOfManyThreads, ::testing::Values(2, 8));

TEST(SerialQueue, SyncKeepsTheOrderOfTheQueue) {
    const auto queue = DispatchQueue::serial("com.example.queue");
    std::vector<std::string> order;
    std::latch go(1);
    queue->async([&] {
        go.wait();
        order.emplace_back("before");
    });
    queue->async([&] {
        order.emplace_back("before, too");
        // Submitted while the sync waits, or after it.
        queue->async([&] { order.emplace_back("after"); });
    });
    std::thread submitter([&] { go.count_down(); });
    std::vector<std::string> seen;
    queue->sync([&] { seen = order; });
    submitter.join();
    ASSERT_GE(seen.size(), 2U);
    seen.resize(2);
    EXPECT_EQ(seen, (std::vector<std::string>{"before", "before, too"}));
    queue->sync([&] { EXPECT_EQ(order.size(), 3U); });
}

TEST(SerialQueue, IsKeptAliveByItsItems) {
    constexpr int items = 100;
    auto queue = DispatchQueue::serial("com.example.queue");
    const std::weak_ptr<DispatchQueue> watched = queue;
    std::latch go(1);
    std::latch ended(items);
    queue->async([&] { go.wait(); });
    for (int item = 0; item < items; ++item) {
        queue->async([&] { ended.count_down(); });
    }
    queue.reset();
    EXPECT_FALSE(watched.expired());
    go.count_down();
    ended.wait();
}

TEST(SerialQueue, SyncWorkMayDropTheLastReference) {
    auto queue = DispatchQueue::serial("com.example.queue");
    const std::weak_ptr<DispatchQueue> watched = queue;
    auto* bare = queue.get();
    bare->sync([&] { queue.reset(); });
    EXPECT_TRUE(watched.expired());
}

TEST(SerialQueue, DestroysAClosureInItsTurn) {
    struct Count {
        explicit Count(int& count) : value(&count) {}
        ~Count() { ++*value; }
        Count(const Count&) = delete;
        Count& operator=(const Count&) = delete;
        int* value;
    };
    const auto queue = DispatchQueue::serial("com.example.queue");
    int destroyed = 0;
    queue->async([count = std::make_shared<Count>(destroyed)] {});
    int seen = -1;
    queue->sync([&] { seen = destroyed; });
    EXPECT_EQ(seen, 1);
}

TEST(SerialQueue, SyncNeedsNoThreadOfThePool) {
    constexpr int allThreads = 64;
    const auto queue = DispatchQueue::serial("com.example.queue");
    std::latch running(allThreads);
    std::latch go(1);
    std::latch ended(allThreads);
    for (int thread = 0; thread < allThreads; ++thread) {
        DispatchQueue::global()->async([&] {
            running.count_down();
            go.wait();
            ended.count_down();
        });
    }
    running.wait();
    int runs = 0;
    std::vector<std::thread> callers;
    callers.reserve(8);
    for (int caller = 0; caller < 4; ++caller) {
        callers.emplace_back([&] {
            for (int sync = 0; sync < 100; ++sync) {
                queue->sync([&] { ++runs; });
            }
        });
    }
    for (auto& caller : callers) {
        caller.join();
    }
    EXPECT_EQ(runs, 400);
    go.count_down();
    ended.wait();
}

TEST(SerialQueue, SyncsOfManyQueuesNest) {
    const auto first = DispatchQueue::serial("com.example.queue");
    const auto second = DispatchQueue::serial("com.example.queue");
    bool ran = false;
    first->sync([&] { second->sync([&] { DispatchQueue::global()->sync([&] { ran = true; }); }); });
    EXPECT_TRUE(ran);
    first->sync([&] { ran = false; });
    EXPECT_FALSE(ran);
}

TEST(SerialQueueDeathTest, SyncFromItsOwnWorkIsAFatalError) {
    const auto queue = DispatchQueue::serial("com.example.queue");
    EXPECT_EXIT(queue->sync([&] { queue->sync([] {}); }), ::testing::KilledBySignal(SIGABRT),
                endsForSync);
    EXPECT_EXIT(
        {
            std::latch never(1);
            queue->async([&] { queue->sync([] {}); });
            never.wait();
        },
        ::testing::KilledBySignal(SIGABRT), endsForSync);
}

TEST(SerialQueueDeathTest, SyncFromItsOwnWorkThroughAnotherQueueIsAFatalError) {
    const auto queue = DispatchQueue::serial("com.example.queue");
    const auto other = DispatchQueue::serial("com.example.other");
    EXPECT_EXIT(queue->sync([&] { other->sync([&] { queue->sync([] {}); }); }),
                ::testing::KilledBySignal(SIGABRT), endsForSync);
}

}  // namespace
}  // namespace orvalo
