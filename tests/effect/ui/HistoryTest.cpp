#include "effect/ui/model/History.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace {

using orvalo::effect::ui::History;
using orvalo::effect::ui::Levels;

constexpr double step = History::secondsPerStep;
/// Of the standard span of 6 s, whose points have one step each.
constexpr std::size_t points = 240;
constexpr std::size_t newest = points - 1;

TEST(History, IsSilentInitially) {
    const History history;
    EXPECT_EQ(history.point(0), Levels());
    EXPECT_EQ(history.point(newest), Levels());
}

TEST(History, StepHoldsTheHighestLevelsWithinIt) {
    History history;
    history.advance(10.0);
    history.record({.input = -6.0F, .output = -9.0F, .reduction = 3.0F, .ducking = 0.0F}, 10.001);
    history.record({.input = -20.0F, .output = -3.0F, .reduction = 1.0F, .ducking = 2.0F}, 10.002);
    EXPECT_FALSE(history.advance(10.0 + 0.9 * step));
    EXPECT_TRUE(history.advance(10.0 + 1.1 * step));
    EXPECT_EQ(history.point(newest),
              (Levels{.input = -6.0F, .output = -3.0F, .reduction = 3.0F, .ducking = 2.0F}));
    EXPECT_EQ(history.point(newest - 1), Levels());
}

TEST(History, LevelsApplyUntilTheNextOnes) {
    History history;
    history.advance(0.0);
    const Levels held{.input = -12.0F, .output = -12.0F, .reduction = 4.0F, .ducking = 0.0F};
    history.record(held, 0.5 * step);
    EXPECT_TRUE(history.advance(3.5 * step));
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(history.point(newest - i), held) << i;
    }
    EXPECT_EQ(history.point(newest - 3), Levels());
}

TEST(History, RecordingClosesEarlierStepsAndReportsTheChange) {
    History history;
    const Levels loud{.input = -12.0F, .output = -12.0F, .reduction = 4.0F, .ducking = 0.0F};
    EXPECT_FALSE(history.record(loud, 0.0));
    EXPECT_FALSE(history.record(loud, 0.9 * step));
    EXPECT_TRUE(history.record(Levels(), 1.1 * step));
    EXPECT_EQ(history.point(newest), loud);
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
    for (std::size_t i = 0; i < points; ++i) {
        EXPECT_TRUE(history.advance(++now * step) || i + 1 == points) << i;
    }
    EXPECT_FALSE(history.advance(++now * step));
}

TEST(History, SkippedTimeLeavesNoSteps) {
    History history;
    history.advance(0.0);
    const Levels held{.input = -12.0F, .output = -12.0F, .reduction = 4.0F, .ducking = 0.0F};
    history.record(held, 0.5 * step);
    EXPECT_TRUE(history.advance(1.5 * step));
    history.skip(1000.0);
    EXPECT_FALSE(history.advance(1000.0 + 0.5 * step));
    EXPECT_EQ(history.point(newest), held);
    EXPECT_EQ(history.point(newest - 1), Levels());
    EXPECT_TRUE(history.record(Levels(), 1000.0 + 1.5 * step));
    EXPECT_EQ(history.point(newest), held);
    EXPECT_EQ(history.point(newest - 1), held);
    EXPECT_EQ(history.point(newest - 2), Levels());
}

TEST(History, SpansShowThreeToThirtySeconds) {
    EXPECT_EQ(History::spans, (std::array{3, 6, 12, 30}));
    History history;
    std::vector<std::size_t> counts;
    for (std::size_t span = 0; span < History::spans.size(); ++span) {
        history.setSpan(span);
        counts.push_back(history.points());
    }
    EXPECT_EQ(counts, (std::vector<std::size_t>{120, 240, 240, 240}));
}

TEST(History, PointOfALongSpanHoldsTheHighestOfItsSteps) {
    constexpr std::size_t thirtySeconds = 3;
    History history;
    history.advance(0.0);
    history.setSpan(thirtySeconds);
    // A point has five steps, and the history starts with whole points.
    bool changed = false;
    for (int i = 0; i < 5; ++i) {
        EXPECT_FALSE(changed) << i;
        const auto level = static_cast<float>(-10 - (i == 2 ? 0 : 10));
        changed = history.record({.input = level, .output = -40.0F}, (i + 0.5) * step);
    }
    EXPECT_FALSE(changed);
    EXPECT_TRUE(history.advance(5.5 * step));
    EXPECT_EQ(history.point(newest).input, -10.0F);
    EXPECT_EQ(history.point(newest - 1), Levels());
    // The next point appears when it is complete.
    EXPECT_FALSE(history.record({.input = -1.0F, .output = -40.0F}, 9.5 * step));
    EXPECT_EQ(history.point(newest).input, -10.0F);
    EXPECT_TRUE(history.advance(10.5 * step));
    EXPECT_EQ(history.point(newest).input, -1.0F);
    EXPECT_EQ(history.point(newest - 1).input, -10.0F);
    // The same steps in a shorter span.
    history.setSpan(1);
    EXPECT_EQ(history.point(newest).input, -1.0F);
    EXPECT_EQ(history.point(newest - 7).input, -10.0F);
}

TEST(History, FillsAPauseOfAnyLengthAtOnce) {
    History history;
    history.advance(0.0);
    const Levels held{.input = -1.0F, .output = -2.0F, .reduction = 0.0F, .ducking = 0.0F};
    history.record(held, 0.001);
    EXPECT_TRUE(history.advance(1e9));
    EXPECT_EQ(history.point(0), held);
    EXPECT_EQ(history.point(newest), held);
}

}  // namespace
