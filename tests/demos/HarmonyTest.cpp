#include "demos/theory/Harmony.h"

#include <gtest/gtest.h>

#include <stdexcept>

using orvalo::Harmony;
using orvalo::Metre;
using orvalo::Mode;
using orvalo::Scale;

namespace {

constexpr int quarter = orvalo::ticksPerQuarter;
constexpr Metre fourFour{4, 4};

TEST(Harmony, DividesABarAmongItsChords) {
    const Harmony harmony("1 4,5", Scale(0, Mode::major), fourFour, 4);
    EXPECT_EQ(harmony.at(0).root, 0);
    EXPECT_EQ(harmony.at(4 * quarter - 1).root, 0);
    EXPECT_EQ(harmony.at(4 * quarter).root, 5);
    EXPECT_EQ(harmony.at(6 * quarter - 1).root, 5);
    EXPECT_EQ(harmony.at(6 * quarter).root, 7);
    EXPECT_EQ(harmony.at(8 * quarter).root, 0);
    EXPECT_EQ(harmony.at(15 * quarter).root, 7);
}

TEST(Harmony, WrapsAtTheLoopsEnds) {
    const Harmony harmony("1 2 4", Scale(0, Mode::major), fourFour, 2);
    EXPECT_EQ(harmony.at(-1).root, 2);
    EXPECT_EQ(harmony.at(8 * quarter).root, 0);
    EXPECT_EQ(harmony.after(5 * quarter).root, 0);
    EXPECT_EQ(harmony.after(0).root, 2);
    EXPECT_EQ(harmony.ticksToChange(quarter), 3 * quarter);
    EXPECT_EQ(harmony.ticksToChange(5 * quarter), 3 * quarter);
}

TEST(Harmony, MergesARepeatedChord) {
    const Harmony harmony("1 1 4 4", Scale(0, Mode::major), fourFour, 4);
    EXPECT_EQ(harmony.ticksToChange(0), 8 * quarter);
    EXPECT_EQ(&harmony.at(0), &harmony.at(7 * quarter));
}

TEST(Harmony, ThrowsForInvalidProgressions) {
    const Scale scale(0, Mode::major);
    EXPECT_THROW(Harmony("", scale, fourFour, 4), std::invalid_argument);
    EXPECT_THROW(Harmony(" ", scale, fourFour, 4), std::invalid_argument);
    EXPECT_THROW(Harmony("1 9", scale, fourFour, 4), std::invalid_argument);
}

}  // namespace
