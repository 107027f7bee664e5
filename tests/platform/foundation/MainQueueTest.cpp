#include <glib.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <csignal>
#include <functional>
#include <memory>
#include <semaphore>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/RunLoop.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo {
namespace {

using orvalo::testing::waitUntil;

constexpr const char* endsForSync =
    "^Fatal error: sync on the queue 'com.orvalo.main-thread' from its own work would never "
    "end.\n$";

TEST(MainQueue, RunsLaterOnTheMainThread) {
    bool ran = false;
    DispatchQueue::main()->async([&] {
        EXPECT_TRUE(RunLoop::isMainThread());
        ran = true;
    });
    EXPECT_FALSE(ran);
    EXPECT_TRUE(waitUntil([&] { return ran; }));
    EXPECT_EQ(DispatchQueue::main()->label(), "com.orvalo.main-thread");
}

class MainQueueOfManyThreads : public ::testing::TestWithParam<int> {};

TEST_P(MainQueueOfManyThreads, KeepsEachThreadsOrder) {
    constexpr int itemsEach = 10'000;
    const int threads = GetParam();
    std::vector<int> next(static_cast<std::size_t>(threads), 0);
    int total = 0;
    int outOfOrder = 0;
    std::vector<std::thread> submitters;
    submitters.reserve(8);
    for (int thread = 0; thread < threads; ++thread) {
        submitters.emplace_back([&, thread] {
            for (int item = 0; item < itemsEach; ++item) {
                DispatchQueue::main()->async([&, thread, item] {
                    auto& expected = next.at(static_cast<std::size_t>(thread));
                    outOfOrder += item == expected ? 0 : 1;
                    ++expected;
                    ++total;
                });
            }
        });
    }
    EXPECT_TRUE(waitUntil([&] { return total == threads * itemsEach; }));
    for (auto& submitter : submitters) {
        submitter.join();
    }
    EXPECT_EQ(outOfOrder, 0);
}

INSTANTIATE_TEST_SUITE_P(Threads, MainQueueOfManyThreads, ::testing::Values(1, 2, 8));

TEST(MainQueue, LosesNoWaitingItem) {
    // More than the pool of nodes.
    constexpr int items = 40'000;
    int next = 0;
    for (int item = 0; item < items; ++item) {
        DispatchQueue::main()->async([&next, item] { next += next == item ? 1 : 0; });
    }
    EXPECT_TRUE(waitUntil([&] { return next == items; }));
}

TEST(MainQueue, RunsOneItemATurn) {
    static int turns;
    turns = 0;
    GSource* other = g_idle_source_new();
    g_source_set_priority(other, G_PRIORITY_DEFAULT);
    g_source_set_callback(
        other,
        [](gpointer) -> gboolean {
            ++turns;
            return G_SOURCE_CONTINUE;
        },
        nullptr, nullptr);
    g_source_attach(other, nullptr);
    std::vector<int> turnOfItem;
    for (int item = 0; item < 5; ++item) {
        DispatchQueue::main()->async([&] { turnOfItem.push_back(turns); });
    }
    EXPECT_TRUE(waitUntil([&] { return turnOfItem.size() == 5; }));
    g_source_destroy(other);
    g_source_unref(other);
    const int first = turnOfItem.front();
    EXPECT_EQ(turnOfItem, (std::vector{first, first + 1, first + 2, first + 3, first + 4}));
}

/// Released each time before the default context polls without a timeout.
std::counting_semaphore<>& sleeping() {
    static std::counting_semaphore<> semaphore(0);
    return semaphore;
}

gint signalAndPoll(GPollFD* descriptors, guint count, gint timeout) {
    if (timeout < 0) {
        sleeping().release();
    }
    return g_poll(descriptors, count, timeout);
}

TEST(MainQueue, WakesASleepingRunLoop) {
    constexpr int rounds = 500;
    g_main_context_set_poll_func(nullptr, signalAndPoll);
    // run() without a deadline: only the queue can wake the loop.
    int ran = 0;
    std::thread submitter([&] {
        for (int round = 0; round < rounds; ++round) {
            sleeping().acquire();
            DispatchQueue::main()->async([&] {
                if (++ran == rounds) {
                    RunLoop::main()->stop();
                }
            });
        }
    });
    RunLoop::main()->run();
    submitter.join();
    g_main_context_set_poll_func(nullptr, g_poll);
    EXPECT_EQ(ran, rounds);
}

struct RecordsItsEnd {
    explicit RecordsItsEnd(std::vector<std::string>& told) : told_(&told) {}
    RecordsItsEnd(RecordsItsEnd&& other) noexcept : told_(std::exchange(other.told_, nullptr)) {}
    RecordsItsEnd(const RecordsItsEnd&) = delete;
    RecordsItsEnd& operator=(const RecordsItsEnd&) = delete;
    RecordsItsEnd& operator=(RecordsItsEnd&&) = delete;
    ~RecordsItsEnd() {
        if (told_ != nullptr) {
            told_->emplace_back(RunLoop::isMainThread() ? "end" : "end elsewhere");
        }
    }
    void operator()() const { told_->emplace_back("run"); }

  private:
    std::vector<std::string>* told_;
};

TEST(MainQueue, DestroysAClosureAfterItsRunOnTheMainThread) {
    std::vector<std::string> told;
    std::thread([&] {
        DispatchQueue::main()->async(RecordsItsEnd(told));
        DispatchQueue::main()->async(RecordsItsEnd(told));
    }).join();
    EXPECT_TRUE(waitUntil([&] { return told.size() == 4; }));
    EXPECT_EQ(told, (std::vector<std::string>{"run", "end", "run", "end"}));
}

TEST(MainQueue, AcceptsLargeAndMoveOnlyClosures) {
    std::array<int, 100> numbers{};
    numbers.back() = 3;
    int sum = 0;
    DispatchQueue::main()->async([&sum, numbers] { sum += numbers.back(); });
    DispatchQueue::main()->async([&sum, number = std::make_unique<int>(4)] { sum += *number; });
    EXPECT_TRUE(waitUntil([&] { return sum == 7; }));
}

TEST(MainQueue, ItemsMaySubmitItems) {
    int depth = 0;
    std::function<void()> deeper = [&] {
        if (++depth < 100) {
            DispatchQueue::main()->async(deeper);
        }
    };
    DispatchQueue::main()->async(deeper);
    EXPECT_TRUE(waitUntil([&] { return depth == 100; }));
}

TEST(MainQueue, WaitsWhileAnItemRunsItsOwnLoop) {
    std::vector<std::string> order;
    DispatchQueue::main()->async([&] {
        order.emplace_back("first begins");
        int turns = 0;
        GSource* other = g_timeout_source_new(1);
        g_source_set_callback(
            other,
            [](gpointer data) -> gboolean {
                ++*static_cast<int*>(data);
                return G_SOURCE_CONTINUE;
            },
            &turns, nullptr);
        g_source_attach(other, nullptr);
        EXPECT_TRUE(waitUntil([&] { return turns == 3; }));
        g_source_destroy(other);
        g_source_unref(other);
        order.emplace_back("first ends");
    });
    DispatchQueue::main()->async([&] { order.emplace_back("second"); });
    EXPECT_TRUE(waitUntil([&] { return order.size() == 3; }));
    EXPECT_EQ(order, (std::vector<std::string>{"first begins", "first ends", "second"}));
}

TEST(MainQueue, SyncWaitsForTheMainThread) {
    std::vector<std::string> order;
    std::atomic<bool> isDone = false;
    std::thread caller([&] {
        auto held = std::make_shared<int>();
        DispatchQueue::main()->async([&] { order.emplace_back("async"); });
        DispatchQueue::main()->sync([&, held] {
            EXPECT_TRUE(RunLoop::isMainThread());
            order.emplace_back("sync");
        });
        EXPECT_EQ(held.use_count(), 1);
        EXPECT_EQ(order, (std::vector<std::string>{"async", "sync"}));
        isDone = true;
        DispatchQueue::main()->async([] {});
    });
    EXPECT_TRUE(waitUntil([&] { return isDone.load(); }));
    caller.join();
}

TEST(MainQueue, SyncsOfManyThreadsAllEnd) {
    constexpr int threads = 8;
    constexpr int syncsEach = 500;
    int count = 0;
    std::atomic<int> ended = 0;
    std::vector<std::thread> callers;
    callers.reserve(8);
    for (int thread = 0; thread < threads; ++thread) {
        callers.emplace_back([&] {
            for (int sync = 0; sync < syncsEach; ++sync) {
                DispatchQueue::main()->sync([&] { ++count; });
            }
            ++ended;
            DispatchQueue::main()->async([] {});
        });
    }
    EXPECT_TRUE(waitUntil([&] { return ended == threads; }));
    for (auto& caller : callers) {
        caller.join();
    }
    EXPECT_EQ(count, threads * syncsEach);
}

TEST(MainQueueDeathTest, SyncFromTheMainThreadIsAFatalError) {
    EXPECT_EXIT(DispatchQueue::main()->sync([] {}), ::testing::KilledBySignal(SIGABRT),
                endsForSync);
}

TEST(MainQueueDeathTest, SyncFromItsOwnWorkIsAFatalError) {
    EXPECT_EXIT(
        {
            DispatchQueue::main()->async([] { DispatchQueue::main()->sync([] {}); });
            waitUntil([] { return false; });
        },
        ::testing::KilledBySignal(SIGABRT), endsForSync);
}

TEST(MainQueueDeathTest, AnExceptionOutOfAnItemEndsTheProgram) {
    EXPECT_EXIT(
        {
            DispatchQueue::main()->async([] { throw std::runtime_error("out of an item"); });
            waitUntil([] { return false; });
        },
        ::testing::KilledBySignal(SIGABRT), "out of an item");
}

}  // namespace
}  // namespace orvalo
