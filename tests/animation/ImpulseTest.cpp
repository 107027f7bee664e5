#include "animation/Impulse.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/animation/Counting.h"

namespace orvalo {

/// Access to an impulse's private state.
struct ImpulsePeer {
    static float value(const Impulse& impulse) { return impulse._value; }
    static float amount(const Impulse& impulse) { return impulse._amount; }
    static float interval(const Impulse& impulse) { return impulse._interval; }
    static std::pair<float, float> bounds(const Impulse& impulse) {
        return {impulse._minVal, impulse._maxVal};
    }
    static std::int64_t& step(Impulse& impulse) { return impulse._step; }
};
namespace {

using testing::Lines;
using testing::tick;
using Peer = ImpulsePeer;

/// The value after each of `ticks` ticks.
std::vector<float> values(Impulse& impulse, int ticks) {
    std::vector<float> result;
    for (int index = 0; index < ticks; ++index) {
        tick(impulse);
        result.push_back(Peer::value(impulse));
    }
    return result;
}

void record(Impulse& impulse, Lines& lines) {
    const auto write = [&lines](const std::string& what) {
        return [what, &lines](const auto& self) {
            lines.push_back(what + " at " + std::to_string(Peer::value(*self)));
        };
    };
    impulse.onAnimation = write("moved");
    impulse.onCollision = write("collided");
    impulse.onFinished = write("finished");
}

TEST(Impulse, IsFinishedWithoutAPushInitially) {
    const auto impulse = std::make_shared<Impulse>();
    EXPECT_TRUE(impulse->isFinished());
    EXPECT_EQ(impulse->getSourceValue(), 0);
    EXPECT_EQ(Peer::value(*impulse), 0);
    EXPECT_FALSE(impulse->onAnimation || impulse->onFinished || impulse->onCollision);
}

TEST(Impulse, AddsTheDampedStepAndEndsBelowTheThreshold) {
    const auto impulse = std::make_shared<Impulse>(1, 1.0F, 0.009F, 0.5F);
    Lines lines;
    record(*impulse, lines);
    EXPECT_EQ(values(*impulse, 3), (std::vector<float>{0.5F, 0.75F, 0.875F}));
    EXPECT_EQ(Peer::step(*impulse), 3);
    // 2^-9 is the last step that is not below a thousandth.
    EXPECT_EQ(values(*impulse, 6).back(), 1.0F - 1.0F / 512);
    EXPECT_FALSE(impulse->isFinished());
    EXPECT_EQ(lines.size(), 9U);
    lines.clear();
    tick(*impulse);
    EXPECT_EQ(lines, Lines{"finished at " + std::to_string(1.0F - 1.0F / 512)});
    EXPECT_TRUE(impulse->isFinished());
    EXPECT_EQ(Peer::value(*impulse), 0);
    EXPECT_EQ(Peer::amount(*impulse), 0);
    EXPECT_EQ(Peer::step(*impulse), 0);
    EXPECT_EQ(impulse->getSourceValue(), 1);
}

TEST(Impulse, HasAnIntensityOfThreeQuartersByDefault) {
    const auto impulse = std::make_shared<Impulse>(1, 1.0F);
    EXPECT_EQ(values(*impulse, 2), (std::vector<float>{0.75F, 0.75F + 0.5625F}));
    impulse->setup(1, 0.0F, 0.009F, 0.5F);
    impulse->setup(1, 4.0F);
    tick(*impulse);
    EXPECT_EQ(Peer::amount(*impulse), 3.0F);
}

TEST(Impulse, ReversesAtABoundAndCallsOnCollisionFirst) {
    const auto impulse = std::make_shared<Impulse>(1, 2.0F, 0.009F, 0.75F);
    impulse->setMinMax(true, -1.0F, 1.0F);
    Lines lines;
    record(*impulse, lines);
    tick(*impulse);
    EXPECT_EQ(Peer::amount(*impulse), -1.5F);
    EXPECT_EQ(lines, (Lines{"collided at 0.000000", "moved at 0.000000"}));
    tick(*impulse);
    EXPECT_EQ(Peer::amount(*impulse), 1.125F);
    EXPECT_EQ(Peer::value(*impulse), 0);
    EXPECT_EQ(lines.size(), 4U);
    lines.clear();
    tick(*impulse);
    EXPECT_EQ(lines, Lines{"moved at 0.843750"});
}

TEST(Impulse, ValueOnABoundCollides) {
    for (const auto amount : {2.0F, -2.0F}) {
        const auto impulse = std::make_shared<Impulse>(1, amount, 0.009F, 0.5F);
        impulse->setMinMax(true, -1.0F, 1.0F);
        int collisions = 0;
        impulse->onCollision = [&collisions](const auto&) { ++collisions; };
        tick(*impulse);
        EXPECT_EQ(collisions, 1) << amount;
        EXPECT_EQ(Peer::value(*impulse), 0) << amount;
    }
}

TEST(Impulse, IgnoresDisabledBounds) {
    const auto impulse = std::make_shared<Impulse>(1, 2.0F);
    impulse->setMinMax(false, -1.0F, 1.0F);
    tick(*impulse);
    EXPECT_EQ(Peer::value(*impulse), 1.5F);
}

TEST(Impulse, BoundsAreDisabledInitially) {
    const auto impulse = std::make_shared<Impulse>(1, 4096.0F);
    EXPECT_EQ(Peer::bounds(*impulse), std::pair(-1024.0F, 1024.0F));
    tick(*impulse);
    EXPECT_EQ(Peer::value(*impulse), 3072.0F);
}

TEST(Impulse, HasAnIntervalOf9MillisecondsByDefault) {
    EXPECT_EQ(Peer::interval(Impulse()), 0.009F);
    EXPECT_EQ(Peer::interval(Impulse(1, 1.0F)), 0.009F);
    Impulse impulse(1, 1.0F, 0.5F);
    EXPECT_EQ(Peer::interval(impulse), 0.5F);
    impulse.setup(1, 1.0F);
    EXPECT_EQ(Peer::interval(impulse), 0.009F);
}

TEST(Impulse, CollidesAtEveryMoveWithSwappedBounds) {
    const auto impulse = std::make_shared<Impulse>(1, 2.0F, 0.009F, 0.5F);
    impulse->setMinMax(true, 5.0F, -5.0F);
    int collisions = 0;
    impulse->onCollision = [&collisions](const auto&) { ++collisions; };
    EXPECT_EQ(values(*impulse, 3), (std::vector<float>{0, 0, 0}));
    EXPECT_EQ(collisions, 3);
}

TEST(Impulse, SetupKeepsTheValue) {
    const auto impulse = std::make_shared<Impulse>(1, 1.0F, 0.009F, 0.5F);
    impulse->setMinMax(true, -10.0F, 10.0F);
    tick(*impulse);
    impulse->setup(7, 8.0F, 0.02F, 0.25F);
    EXPECT_EQ(Peer::value(*impulse), 0.5F);
    EXPECT_EQ(Peer::step(*impulse), 0);
    EXPECT_EQ(impulse->getSourceValue(), 8.0F);
    tick(*impulse);
    EXPECT_EQ(Peer::value(*impulse), 2.5F);
}

TEST(Impulse, NegativeFrameCountIsNotFinished) {
    const auto impulse = std::make_shared<Impulse>();
    impulse->setup(-5, 1.0F);
    EXPECT_FALSE(impulse->isFinished());
    EXPECT_FALSE(std::make_shared<Impulse>(-5, 1.0F)->isFinished());
}

TEST(Impulse, StopKeepsSourceAndBounds) {
    const auto impulse = std::make_shared<Impulse>(1, 2.0F);
    impulse->setMinMax(true, -1.0F, 1.0F);
    Lines lines;
    record(*impulse, lines);
    impulse->stop();
    EXPECT_TRUE(impulse->isFinished());
    EXPECT_EQ(Peer::value(*impulse), 0);
    EXPECT_EQ(Peer::amount(*impulse), 0);
    EXPECT_EQ(impulse->getSourceValue(), 2.0F);
    EXPECT_EQ(lines, Lines{});
    impulse->setup(1, 2.0F);
    tick(*impulse);
    EXPECT_EQ(lines.front(), "collided at 0.000000");
}

TEST(Impulse, EndsOnTheFirstTickWithoutAPush) {
    const auto impulse = std::make_shared<Impulse>();
    Lines lines;
    record(*impulse, lines);
    tick(*impulse);
    EXPECT_EQ(lines, Lines{"finished at 0.000000"});
}

TEST(Impulse, AmountIs0InOnFinished) {
    const auto impulse = std::make_shared<Impulse>(1, 1.0F, 0.009F, 0.0001F);
    float left = 1;
    impulse->onFinished = [&left](const auto& self) { left = Peer::amount(*self); };
    tick(*impulse);
    EXPECT_EQ(left, 0);
}

TEST(Impulse, AmountEqualToTheThresholdMoves) {
    const auto impulse = std::make_shared<Impulse>(1, 0.001F, 0.009F, 1.0F);
    Lines lines;
    record(*impulse, lines);
    tick(*impulse, 50);
    EXPECT_EQ(lines.size(), 50U);
    EXPECT_FALSE(impulse->isFinished());
}

TEST(Impulse, StopsAfterOnFinishedHasSetUpAPush) {
    const auto impulse = std::make_shared<Impulse>();
    impulse->onFinished = [](const auto& self) { self->setup(1, 5.0F); };
    tick(*impulse);
    EXPECT_TRUE(impulse->isFinished());
    EXPECT_EQ(impulse->getSourceValue(), 5.0F);
}

TEST(Impulse, StepCountBeyond64BitsEndsTheProgram) {
    const auto impulse = std::make_shared<Impulse>(1, 1.0F);
    Peer::step(*impulse) = std::numeric_limits<std::int64_t>::max();
    EXPECT_DEATH(tick(*impulse), "Fatal error: Integer overflow in an addition");
}

}  // namespace
}  // namespace orvalo
