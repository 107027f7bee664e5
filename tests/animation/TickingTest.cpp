// The timer and the lifetime of animators, stacks, chains, sequencers and impulses.
#include "animation/Ticking.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "animation/AnimationSequencer.h"
#include "animation/AnimatorChain.h"
#include "animation/AnimatorStack.h"
#include "animation/Impulse.h"
#include "tests/animation/Counting.h"
#include "tests/platform/foundation/DueTimers.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo {
namespace {

using testing::endless;
using testing::Lines;
using testing::waitUntil;
using testing::waitUntilDue;

constexpr float kShort = 0.002F;

/// Makes each kind tick for ever.
template <typename Kind>
struct Kit;

template <>
struct Kit<Animator> {
    static void setInterval(Animator& animator, float interval) {
        animator.setup(0.0F, 1.0F, 1'000'000'000, interval);
    }
    static void fill(Animator& /*animator*/) {}
};

template <>
struct Kit<AnimatorStack> {
    static void setInterval(AnimatorStack& stack, float interval) { stack.interval = interval; }
    static void fill(AnimatorStack& stack) { stack.add(endless()); }
};

template <>
struct Kit<AnimatorChain> {
    static void setInterval(AnimatorChain& chain, float interval) { chain.interval = interval; }
    static void fill(AnimatorChain& chain) {
        chain.add(endless());
        chain.add(endless());
    }
};

template <>
struct Kit<AnimationSequencer> {
    static void setInterval(AnimationSequencer& sequencer, float interval) {
        sequencer.interval = interval;
    }
    static void fill(AnimationSequencer& sequencer) {
        constexpr std::int64_t many = 1'000'000'000;
        sequencer.add(std::make_shared<Animator>(0.0F, 1.0F, many), 0);
    }
};

template <>
struct Kit<Impulse> {
    static void setInterval(Impulse& impulse, float interval) {
        impulse.setup(1, 1.0F, interval, 1.0F);
    }
    static void fill(Impulse& /*impulse*/) {}
};

/// Ticks for ever once it is started.
template <typename Kind>
std::shared_ptr<Kind> makeEndless(float interval = kShort) {
    auto result = std::make_shared<Kind>();
    Kit<Kind>::setInterval(*result, interval);
    Kit<Kind>::fill(*result);
    return result;
}

/// Runs the block on every tick but the last.
template <typename Kind>
void onTick(Kind& ticking, std::function<void()> block) {
    ticking.onAnimation = [block = std::move(block)](const auto&...) { block(); };
}

/// A second timer, to wait for a number of ticks.
class Clock {
  public:
    explicit Clock(float interval) : timer_(startTicking(interval, [this] { ++firings_; })) {}
    ~Clock() { timer_->invalidate(); }
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;

    /// Runs the loop for this many firings.
    void wait(int firings) const {
        const int end = firings_ + firings;
        EXPECT_TRUE(waitUntil([&] { return firings_ >= end; }));
    }

  private:
    int firings_ = 0;
    std::shared_ptr<Timer> timer_;
};

template <typename Kind>
class Ticking : public ::testing::Test {};

using Kinds = ::testing::Types<Animator, AnimatorStack, AnimatorChain, AnimationSequencer, Impulse>;
TYPED_TEST_SUITE(Ticking, Kinds);

TYPED_TEST(Ticking, TicksUntilItIsStopped) {
    const auto ticking = makeEndless<TypeParam>();
    int ticks = 0;
    onTick(*ticking, [&ticks] { ++ticks; });
    ticking->start();
    EXPECT_EQ(ticks, 0);
    EXPECT_TRUE(waitUntil([&ticks] { return ticks >= 5; }));
    ticking->stop();
    const int atStop = ticks;
    Clock(kShort).wait(10);
    EXPECT_EQ(ticks, atStop);
}

TYPED_TEST(Ticking, MayBeStoppedFromItsCallback) {
    const auto ticking = makeEndless<TypeParam>();
    int ticks = 0;
    onTick(*ticking, [&ticks, &ticking] {
        ++ticks;
        ticking->stop();
    });
    ticking->start();
    EXPECT_TRUE(waitUntil([&ticks] { return ticks > 0; }));
    const int atStop = ticks;
    Clock(kShort).wait(10);
    EXPECT_EQ(ticks, atStop);
}

TYPED_TEST(Ticking, LivesOnlyWhileItsTimerRuns) {
    auto ticking = makeEndless<TypeParam>();
    const std::weak_ptr<TypeParam> watched = ticking;
    int ticks = 0;
    onTick(*ticking, [&ticks, watched] {
        if (++ticks == 3) {
            watched.lock()->stop();
            EXPECT_FALSE(watched.expired());
        }
    });
    ticking->start();
    ticking = nullptr;
    EXPECT_FALSE(watched.expired());
    EXPECT_TRUE(waitUntil([&watched] { return watched.expired(); }));
    EXPECT_EQ(ticks, 3);
}

TYPED_TEST(Ticking, StopMayReleaseTheLastReference) {
    auto owner = makeEndless<TypeParam>();
    const std::weak_ptr<TypeParam> watched = owner;
    auto& ticking = *owner;
    ticking.start();
    owner = nullptr;
    ticking.stop();
    EXPECT_TRUE(watched.expired());
}

TYPED_TEST(Ticking, CallbackMayReleaseTheObjectAndItself) {
    auto ticking = makeEndless<TypeParam>();
    const std::weak_ptr<TypeParam> watched = ticking;
    auto capture = std::make_shared<int>(7);
    int seen = 0;
    onTick(*ticking, [&ticking, &seen, capture] {
        if (ticking) {
            ticking->onAnimation = nullptr;
        }
        ticking = nullptr;
        seen = *capture;
    });
    capture = nullptr;
    ticking->animate();
    EXPECT_EQ(seen, 7);
    EXPECT_TRUE(watched.expired());
}

TYPED_TEST(Ticking, MayBeStoppedAndStartedAgainByItsCallback) {
    const auto ticking = makeEndless<TypeParam>();
    int ticks = 0;
    onTick(*ticking, [&ticks, &ticking] {
        ++ticks;
        ticking->stop();
        Kit<TypeParam>::setInterval(*ticking, kShort);
        Kit<TypeParam>::fill(*ticking);
        ticking->start();
    });
    ticking->start();
    EXPECT_TRUE(waitUntil([&ticks] { return ticks >= 5; }));
    ticking->stop();
    const int atStop = ticks;
    Clock(kShort).wait(10);
    EXPECT_EQ(ticks, atStop);
}

TYPED_TEST(Ticking, TicksOnTheThreadThatStartedIt) {
    std::thread([] {
        const auto self = std::this_thread::get_id();
        const auto ticking = makeEndless<TypeParam>();
        int ticks = 0;
        onTick(*ticking, [&ticks, self] {
            EXPECT_EQ(std::this_thread::get_id(), self);
            ++ticks;
        });
        ticking->start();
        EXPECT_TRUE(waitUntil([&ticks] { return ticks >= 5; }));
        ticking->stop();
    }).join();
}

TYPED_TEST(Ticking, EndsWithItsThread) {
    std::weak_ptr<TypeParam> watched;
    std::thread([&watched] {
        const auto ticking = makeEndless<TypeParam>();
        ticking->start();
        watched = ticking;
    }).join();
    EXPECT_TRUE(watched.expired());
}

// The timer of the first start ends only with its thread.

TYPED_TEST(Ticking, TicksTwicePerIntervalWhenStartedTwiceAndContinuesAfterStop) {
    std::thread([] {
        constexpr float interval = 0.01F;
        const auto ticking = makeEndless<TypeParam>(interval);
        int ticks = 0;
        onTick(*ticking, [&ticks] { ++ticks; });
        ticking->start();
        ticking->start();
        ASSERT_TRUE(waitUntilDue(2));
        EXPECT_TRUE(waitUntil([&ticks] { return ticks > 0; }));
        EXPECT_EQ(ticks, 2);
        ticking->stop();
        Kit<TypeParam>::setInterval(*ticking, interval);
        Kit<TypeParam>::fill(*ticking);
        const int atStop = ticks;
        EXPECT_TRUE(waitUntil([&] { return ticks >= atStop + 5; }));
    }).join();
}

TYPED_TEST(Ticking, ReadsItsIntervalAtStart) {
    std::thread([] {
        const auto ticking = makeEndless<TypeParam>(3600.0F);
        int ticks = 0;
        onTick(*ticking, [&ticks] { ++ticks; });
        ticking->start();
        Kit<TypeParam>::setInterval(*ticking, kShort);
        Clock(kShort).wait(10);
        EXPECT_EQ(ticks, 0);
        ticking->start();
        EXPECT_TRUE(waitUntil([&ticks] { return ticks >= 5; }));
    }).join();
}

template <typename Kind>
class Overridden : public Kind {
  public:
    int ticks = 0;
    void animate() override { ++ticks; }
};

TYPED_TEST(Ticking, CallsTheOverriddenAnimate) {
    const auto ticking = std::make_shared<Overridden<TypeParam>>();
    Kit<TypeParam>::setInterval(*ticking, kShort);
    ticking->start();
    EXPECT_TRUE(waitUntil([&ticking] { return ticking->ticks >= 3; }));
    ticking->stop();
}

/// Counts the calls of its overridable operations.
template <typename Kind>
class Counted : public Kind {
  public:
    int stops = 0;
    int resets = 0;

    void stop() override {
        ++stops;
        Kind::stop();
    }
    void reset() override { ++resets; }
};

template <typename Kind>
class Ending : public ::testing::Test {};

// The sequencer's own test covers its operations.
using KindsThatEnd = ::testing::Types<AnimatorStack, AnimatorChain, Impulse>;
TYPED_TEST_SUITE(Ending, KindsThatEnd);

TYPED_TEST(Ending, CallsTheOverriddenStopAndReset) {
    const auto ticking = std::make_shared<Counted<TypeParam>>();
    if constexpr (std::is_same_v<TypeParam, AnimatorChain>) {
        ticking->add(std::make_shared<Animator>());  // A chain without members does not end.
    }
    ticking->animate();
    EXPECT_EQ(ticking->stops, 1);
    EXPECT_EQ(ticking->resets, 1);
}

template <typename Kind>
class Empty : public ::testing::Test {};

using Warning = ::testing::Types<AnimatorChain, AnimationSequencer>;
TYPED_TEST_SUITE(Empty, Warning);

/// Waits for at least three printed lines, stops the object and returns the lines.
template <typename Kind>
Lines linesOf(Kind& ticking) {
    const testing::CapturedOutput output;
    EXPECT_TRUE(waitUntil([&output] { return output.lines().size() >= 3; }));
    ticking.stop();
    return output.lines();
}

TYPED_TEST(Empty, KeepsItsTimerAndWarnsOnEveryTick) {
    const auto ticking = std::make_shared<TypeParam>();
    Kit<TypeParam>::setInterval(*ticking, kShort);
    ticking->start();
    const auto lines = linesOf(*ticking);
    EXPECT_EQ(lines, Lines(lines.size(), testing::kNoMembers));
}

TEST(ImpulseTimer, WithoutASetUpItFinishesOnceAndStops) {
    const auto impulse = std::make_shared<Impulse>();
    int ends = 0;
    int moves = 0;
    impulse->onFinished = [&ends](const auto&) { ++ends; };
    impulse->onAnimation = [&moves](const auto&) { ++moves; };
    impulse->start();
    EXPECT_TRUE(testing::waitUntil([&ends] { return ends > 0; }));
    // The timer held the impulse, and some periods pass.
    EXPECT_EQ(impulse.use_count(), 1);
    int ticks = 0;
    auto clock = startTicking(0.009F, [&ticks] { ++ticks; });
    EXPECT_TRUE(testing::waitUntil([&ticks] { return ticks >= 3; }));
    stopTicking(clock);
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(moves, 0);
    EXPECT_TRUE(impulse->isFinished());
}

TEST(SeveralTicking, TickInOrderOfTheirStarts) {
    constexpr float interval = 0.01F;
    Lines order;
    const auto chain = makeEndless<AnimatorChain>(interval);
    const auto impulse = makeEndless<Impulse>(interval);
    const auto stack = makeEndless<AnimatorStack>(interval);
    const auto note = [&order](const std::string& name) {
        return [&order, name] {
            if (std::find(order.begin(), order.end(), name) == order.end()) {
                order.push_back(name);
            }
        };
    };
    onTick(*stack, note("stack"));
    onTick(*chain, note("chain"));
    onTick(*impulse, note("impulse"));
    stack->start();
    chain->start();
    impulse->start();
    ASSERT_TRUE(waitUntilDue(3));
    EXPECT_TRUE(waitUntil([&order] { return order.size() >= 3; }));
    stack->stop();
    chain->stop();
    impulse->stop();
    EXPECT_EQ(order, (Lines{"stack", "chain", "impulse"}));
}

TEST(SequencerTimer, AdvancesTheFrameBeforeEachTickAlsoDuringAPause) {
    const auto sequencer = makeEndless<AnimationSequencer>();
    std::vector<std::int64_t> frames;
    sequencer->onAnimation = [&frames](const auto& self, const auto&) {
        if (frames.empty() || frames.back() != self->getCurrentFrame()) {
            frames.push_back(self->getCurrentFrame());
        }
    };
    sequencer->start();
    EXPECT_TRUE(waitUntil([&frames] { return frames.size() >= 3; }));
    sequencer->pause();
    const auto atPause = sequencer->getCurrentFrame();
    const auto seen = frames.size();
    EXPECT_TRUE(waitUntil([&] { return sequencer->getCurrentFrame() >= atPause + 3; }));
    EXPECT_EQ(frames.size(), seen);
    sequencer->stop();
    frames.resize(3);
    EXPECT_EQ(frames, (std::vector<std::int64_t>{1, 2, 3}));
}

TEST(SequencerTimer, ContinuesAfterRemoveAll) {
    const auto sequencer = makeEndless<AnimationSequencer>();
    sequencer->start();
    sequencer->removeAll();
    const auto lines = linesOf(*sequencer);
    EXPECT_EQ(lines, Lines(lines.size(), testing::kNoMembers));
}

TEST(SequencerTimer, StartContinuesFromTheCurrentFrame) {
    const auto sequencer = makeEndless<AnimationSequencer>();
    std::int64_t first = 0;
    sequencer->onAnimation = [&first](const auto& self, const auto&) {
        first = first == 0 ? self->getCurrentFrame() : first;
    };
    sequencer->add(testing::endless(), 41);
    sequencer->seek(41);
    sequencer->start();
    EXPECT_TRUE(waitUntil([&first] { return first != 0; }));
    sequencer->stop();
    EXPECT_EQ(first, 42);
}

TEST(SequencerTimer, FrameBeyond64BitsEndsTheProgram) {
    const auto sequencer = makeEndless<AnimationSequencer>();
    sequencer->add(std::make_shared<Animator>(), std::numeric_limits<std::int64_t>::max());
    EXPECT_DEATH(
        {
            sequencer->seek(std::numeric_limits<std::int64_t>::max() - 1);
            sequencer->pause();
            sequencer->start();
            waitUntil([] { return false; });
        },
        "Fatal error: Integer overflow in an addition");
}

TEST(StopTicking, DoesNothingForNull) {
    std::shared_ptr<Timer> none;
    stopTicking(none);
    EXPECT_EQ(none, nullptr);
}

}  // namespace
}  // namespace orvalo
