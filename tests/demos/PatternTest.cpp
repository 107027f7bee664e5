#include "demos/playing/Pattern.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "demos/playing/Feel.h"

using orvalo::Hit;
using orvalo::spread;
using orvalo::stretched;

namespace {

constexpr int cell = orvalo::ticksPerQuarter / 4;

std::string written(const std::vector<Hit>& hits) {
    std::string text;
    for (const Hit& hit : hits) {
        text +=
            std::to_string(hit.tick / cell) + hit.sign + std::to_string(hit.length / cell) + ' ';
    }
    return text;
}

TEST(Pattern, HoldsAndRests) {
    EXPECT_EQ(written(spread("X--.x.-ooo-.....", 4, {4, 4}, 1)), "0X3 4x1 7o1 8o1 9o2 ");
}

TEST(Pattern, RepeatsWithinABarAndIsCutAtItsEnd) {
    EXPECT_EQ(written(spread("X..x", 4, {4, 4}, 1)), "0X1 3x1 4X1 7x1 8X1 11x1 12X1 15x1 ");
    EXPECT_EQ(written(spread("X.....x---------", 4, {3, 4}, 2)), "0X1 6x6 12X1 18x6 ");
    EXPECT_EQ(written(spread("X-----o-", 4, {5, 8}, 2)), "0X6 6o2 8X2 10X6 16o2 18X2 ");
}

TEST(Pattern, CoversWholeBarsWhenItFillsThem) {
    const std::string twoBars = "X...............o...............";
    EXPECT_EQ(written(spread(twoBars, 4, {4, 4}, 4)), "0X1 16o1 32X1 48o1 ");
    EXPECT_EQ(written(spread(twoBars, 4, {4, 4}, 3)), "0X1 16o1 32X1 ");
    // In 7/8 a pattern of a bar in 4/4 starts again after its fourteenth cell.
    EXPECT_EQ(written(spread("X.............xx", 4, {7, 8}, 2)), "0X1 14X1 ");
}

TEST(Pattern, StretchesATextOverTheLoop) {
    EXPECT_EQ(stretched("ab", 0, 100), 'a');
    EXPECT_EQ(stretched("ab", 49, 100), 'a');
    EXPECT_EQ(stretched("ab", 50, 100), 'b');
    EXPECT_EQ(stretched("abc", 99, 100), 'c');
}

TEST(Feel, PlaysSoftlyWhereTheDynamicsAreLow) {
    orvalo::Style style;
    style.loose = 0;
    orvalo::Random random(1);
    const orvalo::Feel feel(style, "19", {4, 4}, 8 * 4 * cell);
    const int soft = feel.velocity(100, 4 * cell, random);
    const int loud = feel.velocity(100, 20 * cell, random);
    EXPECT_EQ(soft, 25);
    EXPECT_EQ(loud, 99);
    EXPECT_EQ(feel.velocity(100, 0, random), 30) << "the first of a bar is stressed";
    EXPECT_EQ(feel.velocity(100, cell, random), 21) << "off the beat is lighter";
    EXPECT_EQ(feel.velocity(1, cell, random), 1);
}

TEST(Feel, SwingsEverySecondCellOnly) {
    orvalo::Style style;
    style.loose = 0;
    style.swing = 30;
    orvalo::Random random(1);
    const orvalo::Feel feel(style, "7", {4, 4}, 16 * cell);
    EXPECT_EQ(feel.place(0, 4, random), 0);
    EXPECT_EQ(feel.place(cell, 4, random), cell + 72);
    EXPECT_EQ(feel.place(2 * cell, 4, random), 2 * cell);
    EXPECT_EQ(feel.place(320, 3, random), 320) << "triplets swing by themselves";
}

TEST(Feel, StaysInTheLoop) {
    orvalo::Style style;
    style.loose = 40;
    orvalo::Random random(1);
    const orvalo::Feel feel(style, "7", {4, 4}, 16 * cell);
    for (int draw = 0; draw < 200; ++draw) {
        EXPECT_GE(feel.place(0, 4, random), 0);
        EXPECT_LT(feel.place(16 * cell - 1, 4, random), 16 * cell);
    }
}

}  // namespace
