#include "effect/ui/model/History.h"

#include <gtest/gtest.h>

namespace {

using orvalo::effect::ui::History;
using orvalo::effect::ui::Levels;

constexpr double step = History::secondsPerStep;
constexpr std::size_t newest = History::steps - 1;

TEST(History, IsSilentInitially) {
    const History history;
    EXPECT_EQ(history.step(0), Levels());
    EXPECT_EQ(history.step(newest), Levels());
}

TEST(History, StepHoldsTheHighestLevelsWithinIt) {
    History history;
    history.advance(10.0);
    history.record({.input = -6.0F, .output = -9.0F, .reduction = 3.0F, .ducking = 0.0F}, 10.001);
    history.record({.input = -20.0F, .output = -3.0F, .reduction = 1.0F, .ducking = 2.0F}, 10.002);
    EXPECT_FALSE(history.advance(10.0 + 0.9 * step));
    EXPECT_TRUE(history.advance(10.0 + 1.1 * step));
    EXPECT_EQ(history.step(newest),
              (Levels{.input = -6.0F, .output = -3.0F, .reduction = 3.0F, .ducking = 2.0F}));
    EXPECT_EQ(history.step(newest - 1), Levels());
}

TEST(History, LevelsApplyUntilTheNextOnes) {
    History history;
    history.advance(0.0);
    const Levels held{.input = -12.0F, .output = -12.0F, .reduction = 4.0F, .ducking = 0.0F};
    history.record(held, 0.5 * step);
    EXPECT_TRUE(history.advance(3.5 * step));
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(history.step(newest - i), held) << i;
    }
    EXPECT_EQ(history.step(newest - 3), Levels());
}

TEST(History, RecordingClosesEarlierStepsAndReportsTheChange) {
    History history;
    const Levels loud{.input = -12.0F, .output = -12.0F, .reduction = 4.0F, .ducking = 0.0F};
    EXPECT_FALSE(history.record(loud, 0.0));
    EXPECT_FALSE(history.record(loud, 0.9 * step));
    EXPECT_TRUE(history.record(Levels(), 1.1 * step));
    EXPECT_EQ(history.step(newest), loud);
    EXPECT_FALSE(history.advance(1.2 * step));
    EXPECT_TRUE(history.advance(2.1 * step));
}

TEST(History, ReportsNoChangeWhenAllStepsAreEqual) {
    History history;
    history.advance(0.0);
    EXPECT_FALSE(history.advance(100.0 * step));
    history.record({.input = 0.0F, .output = 0.0F, .reduction = 0.0F, .ducking = 0.0F},
                   100.5 * step);
    history.record(Levels(), 100.6 * step);
    double now = 101.5;
    EXPECT_TRUE(history.advance(now * step));
    for (std::size_t i = 0; i < History::steps; ++i) {
        EXPECT_TRUE(history.advance(++now * step) || i + 1 == History::steps) << i;
    }
    EXPECT_FALSE(history.advance(++now * step));
}

TEST(History, FillsAPauseOfAnyLengthAtOnce) {
    History history;
    history.advance(0.0);
    const Levels held{.input = -1.0F, .output = -2.0F, .reduction = 0.0F, .ducking = 0.0F};
    history.record(held, 0.001);
    EXPECT_TRUE(history.advance(1e9));
    EXPECT_EQ(history.step(0), held);
    EXPECT_EQ(history.step(newest), held);
}

}  // namespace
