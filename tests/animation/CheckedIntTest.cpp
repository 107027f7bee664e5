#include "animation/CheckedInt.h"

#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <limits>
#include <string>

namespace orvalo {
namespace {

constexpr auto least = std::numeric_limits<std::int64_t>::min();
constexpr float two63 = 9223372036854775808.0f;
constexpr float infinity = std::numeric_limits<float>::infinity();

TEST(CheckedInt, CutsTowardsZero) {
    EXPECT_EQ(checkedInt(0.0f), 0);
    EXPECT_EQ(checkedInt(2.75f), 2);
    EXPECT_EQ(checkedInt(-2.75f), -2);
    EXPECT_EQ(checkedInt(-0.99f), 0);
    EXPECT_EQ(checkedInt(16777216.0f), 16777216);
}

TEST(CheckedInt, ReachesAsFarAsTheFloatsInsideDo) {
    EXPECT_EQ(checkedInt(std::nextafter(two63, 0.0f)), 9223371487098961920);
    EXPECT_EQ(checkedInt(-two63), least);
}

void expectFatal(float value, const std::string& reason) {
    EXPECT_EXIT(checkedInt(value), ::testing::KilledBySignal(SIGABRT),
                "^Fatal error: Float value cannot be converted to Int because " + reason + "\n$");
}

TEST(CheckedIntDeathTest, NamesWhatCannotBeConverted) {
    expectFatal(infinity, "it is either infinite or NaN");
    expectFatal(-infinity, "it is either infinite or NaN");
    expectFatal(std::numeric_limits<float>::quiet_NaN(), "it is either infinite or NaN");
    expectFatal(std::nextafter(-two63, -infinity), "the result would be less than Int.min");
    expectFatal(-std::numeric_limits<float>::max(), "the result would be less than Int.min");
    expectFatal(two63, "the result would be greater than Int.max");
    expectFatal(std::numeric_limits<float>::max(), "the result would be greater than Int.max");
}

}  // namespace
}  // namespace orvalo
