#include "effect/dsp/BeatGenerator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

using orvalo::effect::BeatGenerator;
using Frames = std::vector<std::uint32_t>;

constexpr std::uint8_t quarter = 7;

/// Runs the generator at 48 kHz and collects the frames at which beats start and end.
class BeatGeneratorTest : public testing::Test {
  protected:
    void configure(const BeatGenerator::Settings& settings) {
        generator.configure(settings);
        note();
    }

    void setHostTime(std::optional<double> quarters, double quartersPerSecond) {
        generator.setHostTime(quarters, quartersPerSecond);
        note();
    }

    /// block: the most frames advanced at once.
    void advance(std::uint32_t frames, std::uint32_t block = 1000000) {
        for (const std::uint32_t end = now + frames; now < end;) {
            const auto step = std::min({end - now, block, generator.framesToEdge()});
            ASSERT_GT(step, 0U);
            generator.advance(step);
            now += step;
            note();
        }
    }

    BeatGenerator generator{48000.0};
    std::uint32_t now = 0;
    Frames starts;
    Frames ends;

  private:
    void note() {
        if (generator.isDown() != wasDown_) {
            wasDown_ = !wasDown_;
            (wasDown_ ? starts : ends).push_back(now);
        }
    }

    bool wasDown_ = false;
};

TEST_F(BeatGeneratorTest, IsOffByDefault) {
    generator.reset();
    EXPECT_EQ(generator.framesToEdge(), BeatGenerator::never);
    setHostTime(0.0, 2.0);
    advance(100000);
    EXPECT_EQ(starts, Frames{});
}

TEST_F(BeatGeneratorTest, OwnTempoStartsAtOnce) {
    advance(777);
    configure({.isOn = true, .division = quarter, .length = 0.25, .tempo = 120.0});
    advance(60000);
    EXPECT_EQ(starts, (Frames{777, 24777, 48777}));
    EXPECT_EQ(ends, (Frames{6777, 30777, 54777}));
}

TEST_F(BeatGeneratorTest, RoundsEachBeatToItsFrameWithoutDrift) {
    configure({.isOn = true, .division = quarter, .length = 0.5, .tempo = 131.0});
    advance(48000 * 60 * 10 - 1, 64);
    ASSERT_EQ(starts.size(), 1310U);
    for (std::size_t i = 0; i < starts.size(); ++i) {
        ASSERT_EQ(starts[i], std::llround(static_cast<double>(i) * 48000.0 * 60.0 / 131.0)) << i;
    }
}

TEST_F(BeatGeneratorTest, DivisionsAreNoteValuesWithDotsAndTriplets) {
    const std::vector<double> steps{6.0,       4.0,       8.0 / 3.0, 3.0,       2.0,
                                    4.0 / 3.0, 1.5,       1.0,       2.0 / 3.0, 0.75,
                                    0.5,       1.0 / 3.0, 0.375,     0.25,      1.0 / 6.0};
    for (std::size_t division = 0; division < steps.size(); ++division) {
        EXPECT_DOUBLE_EQ(BeatGenerator::stepOf(static_cast<std::uint8_t>(division)),
                         steps[division])
            << division;
    }
}

TEST_F(BeatGeneratorTest, FollowsTheGridOfTheHostsTime) {
    configure({.isOn = true, .division = quarter, .length = 0.25});
    starts.clear();
    ends.clear();
    // 0.5 quarter notes before the grid point, at 24000 frames per quarter note.
    setHostTime(7.5, 2.0);
    EXPECT_EQ(ends, Frames{0});
    advance(50000, 512);
    EXPECT_EQ(starts, (Frames{12000, 36000}));
    EXPECT_EQ(ends, (Frames{0, 18000, 42000}));
}

TEST_F(BeatGeneratorTest, StartsAtOnceWhenTheHostStartsOnTheGrid) {
    setHostTime(0.0, 0.0);
    configure({.isOn = true, .division = quarter, .length = 0.25});
    advance(5000);
    EXPECT_EQ(starts, Frames{});
    setHostTime(0.0, 2.0);
    advance(30000);
    EXPECT_EQ(starts, (Frames{5000, 29000}));
}

TEST_F(BeatGeneratorTest, OffsetShiftsTheGrid) {
    configure({.isOn = true, .division = quarter, .offset = 0.25, .length = 0.25, .tempo = 120.0});
    advance(40000);
    EXPECT_EQ(starts, (Frames{6000, 30000}));
    configure({.isOn = true, .division = quarter, .offset = -0.25, .length = 0.25, .tempo = 120.0});
    advance(30000);
    EXPECT_EQ(starts, (Frames{6000, 30000, 42000, 66000}));
}

TEST_F(BeatGeneratorTest, RepeatedHostTimeWithRoundingGivesNoExtraBeats) {
    setHostTime(0.0, 2.0);
    configure({.isOn = true, .division = 13, .length = 0.5});
    Frames expected;
    for (std::uint32_t i = 0; i < 40; ++i) {
        expected.push_back(i * 6000);
    }
    // Each grid point is at the end of a block of 60 frames.
    while (now < 40 * 6000 - 100) {
        advance(60);
        // A grid point that was just reached is said to be 2.4 frames ahead.
        const double error = now % 6000 == 0 ? 1e-4 : 0.0;
        setHostTime(static_cast<double>(now) / 24000.0 - error, 2.0);
    }
    EXPECT_EQ(starts, expected);
}

TEST_F(BeatGeneratorTest, JumpStopAndTempoOfTheHostAreFollowed) {
    configure({.isOn = true, .division = quarter, .length = 0.25});
    starts.clear();
    setHostTime(0.5, 2.0);
    advance(6000);
    setHostTime(3.9, 2.0);
    advance(3000);
    EXPECT_EQ(starts, Frames{8400});
    setHostTime(std::nullopt, 0.0);
    EXPECT_EQ(ends.back(), 9000U);
    advance(100000);
    EXPECT_EQ(starts, Frames{8400});
    setHostTime(4.5, 4.0);
    advance(10000);
    EXPECT_EQ(starts, (Frames{8400, 115000}));
}

TEST_F(BeatGeneratorTest, ResetForgetsTheHostsTime) {
    configure({.isOn = true, .division = quarter, .length = 0.25, .tempo = 120.0});
    setHostTime(0.5, 0.0);
    advance(1000);
    generator.reset();
    EXPECT_TRUE(generator.isDown());
    EXPECT_EQ(generator.framesToEdge(), 6000U);
}

TEST_F(BeatGeneratorTest, ShortStepsAtALowRateEnd) {
    BeatGenerator slow(1000.0);
    slow.configure({.isOn = true, .division = 14, .length = 0.05, .tempo = 300.0});
    slow.setHostTime(1e9, 100.0);
    for (int i = 0; i < 10000; ++i) {
        ASSERT_GT(slow.framesToEdge(), 0U);
        slow.advance(1);
    }
}

}  // namespace
