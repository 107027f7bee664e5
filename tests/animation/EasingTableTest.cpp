// Compares every curve with golden/easing.tsv, which golden/make-table computes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <string>

#include "animation/EasingCurve.h"
#include "tests/animation/EasingTable.h"

namespace orvalo {
namespace {

using orvalo::testing::EasingRow;
using orvalo::testing::easingRows;

float evaluate(std::int64_t curve, const EasingRow& row) {
    return easingCurves.at(static_cast<std::size_t>(curve))(row.currentFrame, row.sourceValue,
                                                            row.amount, row.numFrames);
}

std::string nameOf(std::int64_t curve) {
    return easingName(static_cast<EnumEasing>(curve));
}

class EasingTable : public ::testing::TestWithParam<std::int64_t> {
  protected:
    // A plain fork is safe, because this program has no threads, and fast.
    static void SetUpTestSuite() { GTEST_FLAG_SET(death_test_style, "fast"); }
    static void TearDownTestSuite() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_P(EasingTable, MatchesTheCurve) {
    const auto rows = easingRows(nameOf(GetParam()));
    EXPECT_EQ(rows.size(), 140U);
    for (const auto& row : rows) {
        if (!row.fatalMessage.empty()) {
            continue;
        }
        const float value = evaluate(GetParam(), row);
        const bool isRight =
            std::isnan(row.value) ? std::isnan(value) : row.lowest <= value && value <= row.highest;
        EXPECT_TRUE(isRight) << std::setprecision(9) << "frame " << row.currentFrame << " of "
                             << row.numFrames << ", from " << row.sourceValue << " by "
                             << row.amount << ": " << value << " instead of " << row.value << " ("
                             << row.lowest << " to " << row.highest << ')';
    }
}

using EasingTableDeathTest = EasingTable;

TEST_P(EasingTableDeathTest, MatchesFatalErrorsOfTheCurve) {
    for (const auto& row : easingRows(nameOf(GetParam()))) {
        if (!row.fatalMessage.empty()) {
            EXPECT_EXIT(evaluate(GetParam(), row), ::testing::KilledBySignal(SIGABRT),
                        "^Fatal error: " + row.fatalMessage + "\n$")
                << "frame " << row.currentFrame << " of " << row.numFrames;
        }
    }
}

const auto all = ::testing::Range<std::int64_t>(0, rawValue(EnumEasing::EASING_easeLast));
const auto called = [](const auto& curve) { return nameOf(curve.param); };

INSTANTIATE_TEST_SUITE_P(Curves, EasingTable, all, called);
INSTANTIATE_TEST_SUITE_P(Curves, EasingTableDeathTest, all, called);

}  // namespace
}  // namespace orvalo
