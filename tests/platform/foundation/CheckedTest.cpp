#include "platform/foundation/Checked.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>
#include <limits>

namespace orvalo {
namespace {

constexpr auto highest = std::numeric_limits<std::int64_t>::max();
constexpr auto lowest = std::numeric_limits<std::int64_t>::min();

TEST(Checked, CalculatesUpToTheLimits) {
    EXPECT_EQ(checkedAdd<std::int64_t>(highest - 1, 1), highest);
    EXPECT_EQ(checkedSubtract<std::int64_t>(lowest + 1, 1), lowest);
    EXPECT_EQ(checkedMultiply<std::int64_t>(lowest / 2, 2), lowest);
    EXPECT_EQ(checkedAdd<std::uint8_t>(254, 1), 255);
}

TEST(Checked, ConvertsANumberThatFits) {
    EXPECT_EQ((exactly<std::uint8_t>(std::int64_t{255})), 255);
    EXPECT_EQ((exactly<std::int8_t>(std::int64_t{-128})), -128);
    EXPECT_EQ((exactly<std::int64_t>(std::uint64_t{7})), 7);
}

TEST(CheckedDeathTest, EndsTheProgramInsteadOfWrapping) {
    EXPECT_EXIT(checkedAdd<std::int64_t>(highest, 1), ::testing::KilledBySignal(SIGABRT),
                "^Fatal error: Integer overflow in an addition.\n$");
    EXPECT_EXIT(checkedSubtract<std::uint32_t>(0, 1), ::testing::KilledBySignal(SIGABRT),
                "^Fatal error: Integer overflow in a subtraction.\n$");
    EXPECT_EXIT(checkedMultiply<std::int64_t>(highest, 2), ::testing::KilledBySignal(SIGABRT),
                "^Fatal error: Integer overflow in a multiplication.\n$");
}

TEST(CheckedDeathTest, EndsTheProgramInsteadOfTruncating) {
    EXPECT_EXIT((exactly<std::uint8_t>(std::int64_t{256})), ::testing::KilledBySignal(SIGABRT),
                "^Fatal error: An integer does not fit its type.\n$");
    EXPECT_EXIT((exactly<std::uint64_t>(std::int64_t{-1})), ::testing::KilledBySignal(SIGABRT),
                "^Fatal error: An integer does not fit its type.\n$");
}

}  // namespace
}  // namespace orvalo
