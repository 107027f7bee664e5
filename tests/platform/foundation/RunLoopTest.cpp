#include "platform/foundation/RunLoop.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "platform/foundation/DispatchQueue.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo {
namespace {

using namespace std::chrono_literals;

/// Runs an operation in a turn of the calling thread's run loop.
void inATurn(void (*operation)()) {
    GSource* source = g_idle_source_new();
    g_source_set_callback(
        source,
        [](gpointer data) -> gboolean {
            reinterpret_cast<void (*)()>(data)();
            return G_SOURCE_REMOVE;
        },
        reinterpret_cast<gpointer>(operation), nullptr);
    g_source_attach(source, RunLoop::current()->context());
    g_source_unref(source);
}

TEST(RunLoop, UsesTheDefaultContextOnTheMainThread) {
    EXPECT_TRUE(RunLoop::isMainThread());
    EXPECT_EQ(RunLoop::main()->context(), g_main_context_default());
    EXPECT_EQ(RunLoop::current(), RunLoop::main());
}

TEST(RunLoop, UsesAnotherContextOnEveryOtherThread) {
    std::thread([] {
        EXPECT_FALSE(RunLoop::isMainThread());
        const auto own = RunLoop::current();
        EXPECT_NE(own, RunLoop::main());
        EXPECT_NE(own->context(), g_main_context_default());
        EXPECT_EQ(RunLoop::current(), own);
        EXPECT_EQ(g_main_context_get_thread_default(), own->context());
        EXPECT_EQ(RunLoop::main()->context(), g_main_context_default());
    }).join();
}

TEST(RunLoop, IsDestroyedWithItsThread) {
    std::weak_ptr<RunLoop> loop;
    std::thread([&] { loop = RunLoop::current(); }).join();
    EXPECT_TRUE(loop.expired());
}

TEST(RunLoop, StopsAfterTheTurn) {
    std::thread([] {
        static int turns;
        turns = 0;
        inATurn([] {
            RunLoop::current()->stop();
            ++turns;
        });
        RunLoop::current()->run();
        EXPECT_EQ(turns, 1);
    }).join();
}

TEST(RunLoop, StopsFromAnotherThread) {
    // Requested inside run(), so that the stop cannot come before run().
    inATurn([] { DispatchQueue::global()->async([] { RunLoop::main()->stop(); }); });
    RunLoop::main()->run();
}

TEST(RunLoop, StopsTheInnermostRun) {
    static int ended;
    ended = 0;
    inATurn([] {
        inATurn([] { RunLoop::current()->stop(); });
        RunLoop::current()->run();
        EXPECT_EQ(ended, 0);
        ++ended;
        inATurn([] { RunLoop::current()->stop(); });
    });
    RunLoop::current()->run();
    EXPECT_EQ(ended, 1);
}

TEST(RunLoop, IgnoresAStopWhileNothingRuns) {
    std::thread([] {
        static bool hadATurn;
        hadATurn = false;
        RunLoop::current()->stop();
        inATurn([] {
            hadATurn = true;
            RunLoop::current()->stop();
        });
        RunLoop::current()->run();
        EXPECT_TRUE(hadATurn);
    }).join();
}

TEST(RunLoop, DispatchesNothingWhenTheConditionHolds) {
    std::thread([] {
        static bool hadATurn;
        hadATurn = false;
        inATurn([] { hadATurn = true; });
        EXPECT_TRUE(RunLoop::current()->run([] { return true; }, 1h));
        EXPECT_FALSE(hadATurn);
        EXPECT_TRUE(RunLoop::current()->run([] { return hadATurn; }, 1h));
    }).join();
}

TEST(RunLoop, ChecksTheConditionAfterEveryTurn) {
    std::thread([] {
        static int turns;
        turns = 0;
        inATurn([] {
            ++turns;
            inATurn([] { ++turns; });
        });
        EXPECT_TRUE(RunLoop::current()->run([] { return turns == 1; }, 1h));
        EXPECT_EQ(turns, 1);
    }).join();
}

TEST(RunLoop, TimesOutWithoutBusyWaiting) {
    const auto start = std::chrono::steady_clock::now();
    int looks = 0;
    EXPECT_FALSE(RunLoop::current()->run(
        [&] {
            ++looks;
            return false;
        },
        100ms));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 100ms);
    EXPECT_LT(looks, 50);
    EXPECT_FALSE(RunLoop::current()->run([] { return false; }, -1ms));
}

TEST(RunLoop, IgnoresStopWhileItWaitsForACondition) {
    inATurn([] {
        RunLoop::current()->stop();
        inATurn([] { RunLoop::current()->stop(); });
    });
    int looks = 0;
    EXPECT_TRUE(testing::waitUntil([&] { return ++looks == 3; }));
}

TEST(RunLoopDeathTest, RunsOnItsOwnThreadOnly) {
    EXPECT_EXIT(std::thread([] { RunLoop::main()->run(); }).join(),
                ::testing::KilledBySignal(SIGABRT),
                "^Fatal error: A run loop runs on its own thread only.\n$");
}

}  // namespace
}  // namespace orvalo
