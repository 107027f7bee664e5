#include "demos/theory/Random.h"

#include <gtest/gtest.h>

#include <array>
#include <span>

using orvalo::Random;

namespace {

TEST(Random, UsesTheHighBitsOfMt19937) {
    // std::mt19937 seeded with 5489 gives 3499211612, 581869302, 3890346734, 3586334585 first.
    Random random(5489);
    EXPECT_EQ(random.below(1000), 814);
    EXPECT_EQ(random.below(1000), 135);
    EXPECT_EQ(random.below(1000), 905);
    EXPECT_EQ(random.below(1000), 835);
}

TEST(Random, CoversExactlyItsRange) {
    Random random(7);
    std::array<int, 5> seen{};
    for (int draw = 0; draw < 5000; ++draw) {
        const int value = random.between(2, 6);
        ASSERT_GE(value, 2);
        ASSERT_LE(value, 6);
        ++seen.at(static_cast<std::size_t>(value) - 2);
    }
    for (const int count : seen) {
        EXPECT_GT(count, 800);
        EXPECT_LT(count, 1200);
    }
}

TEST(Random, ChanceIsExactAt0And100Percent) {
    Random random(3);
    for (int draw = 0; draw < 1000; ++draw) {
        EXPECT_FALSE(random.chance(0));
        EXPECT_TRUE(random.chance(100));
        EXPECT_EQ(random.below(1), 0);
    }
}

TEST(Random, PicksOneOfTheValues) {
    constexpr std::array<int, 3> values = {4, 8, 15};
    Random random(11);
    std::array<bool, 16> seen{};
    for (int draw = 0; draw < 100; ++draw) {
        seen.at(static_cast<std::size_t>(random.pick(std::span<const int>(values)))) = true;
    }
    EXPECT_TRUE(seen[4] && seen[8] && seen[15]);
}

}  // namespace
