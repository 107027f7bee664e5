#include "platform/foundation/Timer.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <iterator>
#include <limits>
#include <memory>
#include <thread>
#include <vector>

#include "platform/foundation/RunLoop.h"
#include "tests/platform/foundation/DueTimers.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using orvalo::testing::waitUntil;
using orvalo::testing::waitUntilDue;

using Fired = const std::shared_ptr<Timer>&;

/// Keeps the thread busy.
void load(std::chrono::milliseconds time) {
    std::this_thread::sleep_for(time);
}

TEST(Timer, FiresRepeatedlyOnTheThreadThatStartedIt) {
    int firings = 0;
    const auto timer = Timer::scheduledTimer(0.001, [&](Fired fired) {
        EXPECT_TRUE(RunLoop::isMainThread());
        EXPECT_TRUE(fired->isValid());
        ++firings;
    });
    EXPECT_TRUE(waitUntil([&] { return firings >= 5; }));
    timer->invalidate();

    std::thread([] {
        const auto self = std::this_thread::get_id();
        int own = 0;
        const auto other = Timer::scheduledTimer(0.001, [&](Fired) {
            EXPECT_EQ(std::this_thread::get_id(), self);
            ++own;
        });
        EXPECT_TRUE(waitUntil([&] { return own >= 5; }));
        other->invalidate();
    }).join();
}

TEST(Timer, PassesItselfToItsBlock) {
    std::shared_ptr<Timer> seen;
    const auto timer = Timer::scheduledTimer(0.001, [&](Fired fired) { seen = fired; });
    EXPECT_TRUE(waitUntil([&] { return seen != nullptr; }));
    EXPECT_EQ(seen, timer);
    timer->invalidate();
}

TEST(Timer, NeverFiresEarly) {
    const auto start = Clock::now();
    int firings = 0;
    const auto timer = Timer::scheduledTimer(0.02, [&](Fired) {
        ++firings;
        EXPECT_GE(Clock::now() - start, firings * 20ms);
    });
    EXPECT_TRUE(waitUntil([&] { return firings == 5; }));
    timer->invalidate();
}

TEST(Timer, FiresNotMuchLater) {
    // GLib's timer of eight periods is due after the first firing, however busy the machine is:
    // sources that are due together run in the order of their start.
    bool hasFired = false;
    bool isOver = false;
    const auto timer = Timer::scheduledTimer(0.05, [&](Fired) { hasFired = true; });
    struct Ends {
        bool& hasFired;
        bool& isOver;
    } ends{hasFired, isOver};
    g_timeout_add(
        400,
        [](gpointer data) -> gboolean {
            auto& seen = *static_cast<Ends*>(data);
            EXPECT_TRUE(seen.hasFired);
            seen.isOver = true;
            return G_SOURCE_REMOVE;
        },
        &ends);
    EXPECT_TRUE(waitUntil([&] { return isOver; }));
    timer->invalidate();
}

TEST(Timer, CoalescesMissedPeriods) {
    constexpr auto interval = 20ms;
    const auto start = Clock::now();
    int firings = 0;
    const auto timer = Timer::scheduledTimer(0.02, [&](Fired fired) {
        if (++firings == 1) {
            load(interval * 7 / 2);
        }
        if (firings == 3) {
            fired->invalidate();
        }
    });
    EXPECT_TRUE(waitUntil([&] { return !timer->isValid(); }));
    // One firing after period 1, a late one for periods 2 to 4, the next after period 5. One firing
    // for each missed period would end before period 5.
    EXPECT_EQ(firings, 3);
    EXPECT_GE(Clock::now() - start, 5 * interval);
}

TEST(Timer, DoesNotDrift) {
    // After a late firing the next one keeps its time, so the gap between the two is short. A timer
    // that drifts never has a gap below its interval.
    constexpr auto interval = 20ms;
    auto shortest = Clock::duration::max();
    auto last = Clock::time_point::min();
    int firings = 0;
    const auto timer = Timer::scheduledTimer(0.02, [&](Fired) {
        const auto now = Clock::now();
        if (firings > 0) {
            shortest = std::min(shortest, now - last);
        }
        last = now;
        if (++firings % 2 == 1) {
            load(interval * 3 / 2);
        }
    });
    EXPECT_TRUE(waitUntil([&] { return shortest < interval * 3 / 4; }));
    timer->invalidate();
}

class TimerWithOddInterval : public ::testing::TestWithParam<double> {};

TEST_P(TimerWithOddInterval, IsClampedToATenthOfAMillisecond) {
    const auto start = Clock::now();
    int firings = 0;
    const auto timer = Timer::scheduledTimer(GetParam(), [&](Fired) { ++firings; });
    EXPECT_TRUE(waitUntil([&] { return firings >= 200; }));
    EXPECT_GE(Clock::now() - start, 200 * 100us);
    timer->invalidate();
}

INSTANTIATE_TEST_SUITE_P(Values, TimerWithOddInterval,
                         ::testing::Values(0.0, -1.0, 0.00001, 0.0001,
                                           std::numeric_limits<double>::quiet_NaN(),
                                           -std::numeric_limits<double>::infinity()));

TEST(Timer, DoesNotFireWithAnInfiniteInterval) {
    int firings = 0;
    int others = 0;
    const auto timer =
        Timer::scheduledTimer(std::numeric_limits<double>::infinity(), [&](Fired) { ++firings; });
    const auto other = Timer::scheduledTimer(0.001, [&](Fired) { ++others; });
    EXPECT_TRUE(waitUntil([&] { return others >= 5; }));
    EXPECT_EQ(firings, 0);
    timer->invalidate();
    other->invalidate();
}

TEST(Timer, IsKeptAliveByTheRunLoopUntilInvalidated) {
    int firings = 0;
    auto held = std::make_shared<int>();
    std::weak_ptr<Timer> timer =
        Timer::scheduledTimer(0.001, [&firings, held](Fired) { ++firings; });
    EXPECT_TRUE(waitUntil([&] { return firings >= 3; }));
    EXPECT_EQ(held.use_count(), 2);
    timer.lock()->invalidate();
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_TRUE(timer.expired());
}

TEST(Timer, DoesNotFireAfterInvalidate) {
    int firings = 0;
    int others = 0;
    const auto timer = Timer::scheduledTimer(0.001, [&](Fired) { ++firings; });
    timer->invalidate();
    timer->invalidate();
    EXPECT_FALSE(timer->isValid());
    const auto other = Timer::scheduledTimer(0.001, [&](Fired) { ++others; });
    EXPECT_TRUE(waitUntil([&] { return others >= 5; }));
    EXPECT_EQ(firings, 0);
    other->invalidate();
}

TEST(Timer, DestroysItsBlockAfterTheReturnWhenInvalidatedInsideIt) {
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> watched = held;
    bool returned = false;
    std::weak_ptr<Timer> timer =
        Timer::scheduledTimer(0.001, [&returned, watched, held = std::move(held)](Fired fired) {
            fired->invalidate();
            EXPECT_FALSE(fired->isValid());
            EXPECT_FALSE(watched.expired());
            EXPECT_EQ(*held, 0);
            returned = true;
        });
    EXPECT_TRUE(waitUntil([&] { return returned; }));
    EXPECT_TRUE(watched.expired());
    EXPECT_TRUE(timer.expired());
}

struct Owner {
    std::shared_ptr<Timer> timer;
    int value = 1;
};

TEST(Timer, MayLoseItsLastReferenceInsideItsBlock) {
    auto owner = std::make_shared<Owner>();
    const std::weak_ptr<Owner> watched = owner;
    int seen = 0;
    owner->timer = Timer::scheduledTimer(0.001, [&seen, owner](Fired) {
        owner->timer->invalidate();
        owner->timer.reset();
        seen = owner->value;
    });
    owner.reset();
    EXPECT_TRUE(waitUntil([&] { return seen == 1; }));
    EXPECT_TRUE(watched.expired());
}

TEST(Timer, MayBeInvalidatedByADestructorOfItsBlock) {
    struct Holder {
        std::shared_ptr<Timer> timer;
        bool* wasReleased = nullptr;
        ~Holder() {
            timer->invalidate();
            *wasReleased = true;
        }
    };
    bool wasReleased = false;
    auto holder = std::make_shared<Holder>();
    holder->wasReleased = &wasReleased;
    const auto timer = Timer::scheduledTimer(0.001, [holder](Fired) {});
    holder->timer = timer;
    holder.reset();
    timer->invalidate();
    EXPECT_TRUE(wasReleased);
}

TEST(Timer, CanStartTimersInsideItsBlock) {
    std::vector<std::shared_ptr<Timer>> started;
    int firings = 0;
    const auto timer = Timer::scheduledTimer(0.001, [&](Fired fired) {
        fired->invalidate();
        for (int count = 0; count < 10; ++count) {
            started.push_back(Timer::scheduledTimer(0.001, [&](Fired own) {
                ++firings;
                own->invalidate();
            }));
        }
    });
    EXPECT_TRUE(waitUntil([&] { return firings == 10; }));
}

TEST(Timer, FiresInStartOrderWhenDueTogether) {
    std::vector<int> order;
    std::vector<std::shared_ptr<Timer>> timers;
    timers.reserve(5);
    for (int number = 0; number < 5; ++number) {
        timers.push_back(Timer::scheduledTimer(0.001, [&order, number](Fired fired) {
            order.push_back(number);
            fired->invalidate();
        }));
    }
    ASSERT_TRUE(waitUntilDue(5));
    EXPECT_TRUE(waitUntil([&] { return order.size() == 5; }));
    EXPECT_EQ(order, (std::vector{0, 1, 2, 3, 4}));
}

TEST(Timer, DoesNotFireWhenInvalidatedInTheSameTurn) {
    std::shared_ptr<Timer> second;
    int seconds = 0;
    int thirds = 0;
    const auto first = Timer::scheduledTimer(0.001, [&](Fired) { second->invalidate(); });
    second = Timer::scheduledTimer(0.001, [&](Fired) { ++seconds; });
    const auto third = Timer::scheduledTimer(0.001, [&](Fired) { ++thirds; });
    ASSERT_TRUE(waitUntilDue(3));
    EXPECT_TRUE(waitUntil([&] { return thirds == 2; }));
    EXPECT_EQ(seconds, 0);
    first->invalidate();
    third->invalidate();
}

TEST(Timer, IsInvalidatedAtItsThreadsEnd) {
    auto held = std::make_shared<int>();
    std::shared_ptr<Timer> timer;
    std::thread([&] {
        Timer::scheduledTimer(0.001, [held](Fired) {});
        timer = Timer::scheduledTimer(0.001, [held](Fired) {});
    }).join();
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_FALSE(timer->isValid());
    timer->invalidate();
}

TEST(Timer, LeavesNoDescriptorOpen) {
    const auto openFiles = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    };
    const auto before = openFiles();
    const auto timer = Timer::scheduledTimer(0.001, [](Fired) {});
    EXPECT_EQ(openFiles(), before + 1);
    timer->invalidate();
    EXPECT_EQ(openFiles(), before);
}

}  // namespace
}  // namespace orvalo
