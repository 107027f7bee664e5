// Properties of whole curves, and their values at the ends.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

#include "animation/EasingCurve.h"

namespace orvalo {
namespace {

using enum EnumEasing;

/// Tolerance for a few roundings of numbers around 1.
constexpr float nearly = 2e-6f;

float at(EnumEasing type, std::int64_t frame, float source, float amount, std::int64_t frames) {
    return easingCurves.at(static_cast<std::size_t>(rawValue(type)))(frame, source, amount, frames);
}

/// Smallest and largest change from frame to frame in a run of 1000 frames from 0 to 1.
std::pair<float, float> extremeSteps(EnumEasing type) {
    auto [least, most] = std::pair(std::numeric_limits<float>::max(), -1.0f);
    for (std::int64_t frame = 1; frame <= 1000; ++frame) {
        const float step = at(type, frame, 0, 1, 1000) - at(type, frame - 1, 0, 1, 1000);
        least = std::min(least, step);
        most = std::max(most, step);
    }
    return {least, most};
}

/// A curve of a family. way: 0 In, 1 Out, 2 In-Out, 3 Out-In.
EnumEasing member(std::int64_t family, std::int64_t way) {
    return static_cast<EnumEasing>(1 + family * 4 + way);
}
constexpr std::int64_t quart = 2;
constexpr std::int64_t expo = 5;
constexpr std::int64_t circ = 6;
constexpr std::int64_t families = 10;

class Easing : public ::testing::TestWithParam<EnumEasing> {};

TEST_P(Easing, StartsAtTheStartValueExceptQuart) {
    const auto type = GetParam();
    const float start = type == EASING_easeOutQuart     ? 3.0f + 2 * 4.0f
                        : type == EASING_easeOutInQuart ? 3.0f + 2 * 2.0f
                                                        : 3.0f;
    for (const std::int64_t frames : {2, 5, 10, 1000}) {
        EXPECT_NEAR(at(type, 0, 3, 4, frames), start, 4 * nearly) << frames;
    }
}

TEST_P(Easing, EndsAtTheEndValue) {
    for (const std::int64_t frames : {1, 2, 5, 10, 1000}) {
        EXPECT_NEAR(at(GetParam(), frames, 3, 4, frames), 7, 4 * nearly) << frames;
    }
}

TEST_P(Easing, IsConstantWithoutAChange) {
    for (std::int64_t frame = 0; frame <= 20; ++frame) {
        EXPECT_EQ(at(GetParam(), frame, 2.5f, 0, 20), 2.5f) << frame;
    }
}

const auto called = [](const auto& curve) { return easingName(curve.param); };

std::vector<EnumEasing> allCurves() {
    std::vector<EnumEasing> types{EASING_easeNone};
    for (std::int64_t family = 0; family < families; ++family) {
        for (std::int64_t way = 0; way < 4; ++way) {
            types.push_back(member(family, way));
        }
    }
    return types;
}

INSTANTIATE_TEST_SUITE_P(Curves, Easing, ::testing::ValuesIn(allCurves()), called);

class RisingEasing : public ::testing::TestWithParam<EnumEasing> {};

TEST_P(RisingEasing, NeverFalls) {
    EXPECT_GE(extremeSteps(GetParam()).first, -nearly);
}

class FallingEasing : public ::testing::TestWithParam<EnumEasing> {};

TEST_P(FallingEasing, NeverRises) {
    EXPECT_LE(extremeSteps(GetParam()).second, nearly);
}

class SwingingEasing : public ::testing::TestWithParam<EnumEasing> {};

TEST_P(SwingingEasing, RisesAndFalls) {
    const auto [least, most] = extremeSteps(GetParam());
    EXPECT_LT(least, -1e-4f);
    EXPECT_GT(most, 1e-4f);
}

std::vector<EnumEasing> risingCurves() {
    std::vector<EnumEasing> types{EASING_easeNone, EASING_easeInQuart};
    for (const std::int64_t family : {0, 1, 3, 4, 5, 6}) {
        for (std::int64_t way = 0; way < 4; ++way) {
            types.push_back(member(family, way));
        }
    }
    return types;
}

std::vector<EnumEasing> swingingCurves() {
    std::vector<EnumEasing> types{EASING_easeInOutQuart, EASING_easeOutInQuart};
    for (std::int64_t family = circ + 1; family < families; ++family) {
        for (std::int64_t way = 0; way < 4; ++way) {
            types.push_back(member(family, way));
        }
    }
    return types;
}

INSTANTIATE_TEST_SUITE_P(Curves, RisingEasing, ::testing::ValuesIn(risingCurves()), called);
INSTANTIATE_TEST_SUITE_P(Curves, FallingEasing, ::testing::Values(EASING_easeOutQuart), called);
INSTANTIATE_TEST_SUITE_P(Curves, SwingingEasing, ::testing::ValuesIn(swingingCurves()), called);

class EasingFamily : public ::testing::TestWithParam<std::int64_t> {
  protected:
    /// Expects that each curve is the other one rotated by 180 degrees.
    static void expectPointSymmetry(EnumEasing one, EnumEasing other) {
        for (std::int64_t frame = 0; frame <= 240; ++frame) {
            EXPECT_NEAR(at(one, frame, 0, 1, 240), 1 - at(other, 240 - frame, 0, 1, 240),
                        5 * nearly)
                << easingName(one) << " at " << frame;
        }
    }
};

TEST_P(EasingFamily, InAndOutArePointSymmetric) {
    const auto family = GetParam();
    if (family == quart) {
        // Its Out curve falls to the end value instead of rising.
        EXPECT_EQ(at(EASING_easeOutQuart, 120, 0, 1, 240),
                  1 + at(EASING_easeInQuart, 120, 0, 1, 240));
        return;
    }
    expectPointSymmetry(member(family, 0), member(family, 1));
    expectPointSymmetry(member(family, 3), member(family, 3));
    if (family != expo) {
        expectPointSymmetry(member(family, 2), member(family, 2));
    }
}

TEST_P(EasingFamily, SplitsTheOutInCurveAtAWholeFrame) {
    const auto expectHalf = [](std::int64_t way, float start, std::int64_t frame,
                               std::int64_t frames, std::int64_t passed) {
        const float whole = at(member(GetParam(), 3), frame, 3, 8, frames);
        const float half = at(member(GetParam(), way), passed, start, 4, frames);
        EXPECT_TRUE(whole == half || (std::isnan(whole) && std::isnan(half)))
            << frame << " of " << frames << ": " << whole << " instead of " << half;
    };
    const auto expectOut = std::bind_front(expectHalf, 1, 3.0f);
    const auto expectIn = std::bind_front(expectHalf, 0, 7.0f);
    expectOut(-1, 5, -2);
    expectOut(0, 5, 0);
    expectOut(1, 5, 2);
    expectIn(2, 5, -1);
    expectIn(3, 5, 1);
    expectIn(5, 5, 5);
    expectOut(2, 6, 4);
    expectIn(3, 6, 0);
    expectIn(0, 1, -1);
    // Half of an odd negative length is truncated towards zero.
    expectOut(-3, -5, -6);
    expectIn(-2, -5, 1);
}

INSTANTIATE_TEST_SUITE_P(Families, EasingFamily, ::testing::Range<std::int64_t>(0, families),
                         [](const auto& family) {
                             return easingName(member(family.param, 0)).substr(6);
                         });

TEST(ExpoEasing, InOutStaysNearTheStartAndJumpsToTheEnd) {
    EXPECT_EQ(at(EASING_easeInOutExpo, 0, 0, 1, 10), 0);
    EXPECT_NEAR(at(EASING_easeInOutExpo, 9, 0, 1, 10), 0.5f * std::pow(2.0f, -5.5f), 1e-8f);
    EXPECT_EQ(at(EASING_easeInOutExpo, 10, 0, 1, 10), 1);
    EXPECT_NEAR(at(EASING_easeInOutExpo, 999999, 0, 1, 1000000), 1.0f / 64, 1e-6f);
    EXPECT_NEAR(at(EASING_easeInOutExpo, 40, 0, 1, 10), 1 - 0.5f / 1024, nearly);
}

TEST(QuartEasing, FallsWhereTheOthersRise) {
    EXPECT_EQ(at(EASING_easeOutQuart, 0, 3, 4, 10), 11);
    EXPECT_EQ(at(EASING_easeOutQuart, 10, 3, 4, 10), 7);
    EXPECT_EQ(at(EASING_easeInOutQuart, 5, 3, 4, 10), 9);
    EXPECT_NEAR(at(EASING_easeInOutQuart, 4999999, 3, 4, 10000000), 5, 1e-4f);
}

TEST(ElasticEasing, EndsExactly) {
    EXPECT_EQ(at(EASING_easeInElastic, 7, 0.1f, 0.2f, 7), 0.1f + 0.2f);
    EXPECT_EQ(at(EASING_easeOutElastic, 7, 0.1f, 0.2f, 7), 0.1f + 0.2f);
    EXPECT_EQ(at(EASING_easeInOutElastic, 7, 0.1f, 0.2f, 7), 0.1f + 0.2f);
    EXPECT_EQ(at(EASING_easeInElastic, -7, 0.1f, 0.2f, -7), 0.1f + 0.2f);
}

TEST(BounceEasing, EndsExactly) {
    EXPECT_EQ(at(EASING_easeInBounce, 7, 0.1f, 0.2f, 7), 0.2f - 0 + 0.1f);
}

TEST(BackEasing, OvershootsByATenth) {
    float lowest = 0;
    float highest = 1;
    for (std::int64_t frame = 0; frame <= 1000; ++frame) {
        lowest = std::min(lowest, at(EASING_easeInBack, frame, 0, 1, 1000));
        highest = std::max(highest, at(EASING_easeOutBack, frame, 0, 1, 1000));
    }
    EXPECT_NEAR(lowest, -0.1f, 1e-4f);
    EXPECT_NEAR(highest, 1.1f, 1e-4f);
}

TEST(EasingOfNoFrames, DividesByZeroExceptAtTheFixedEndsOfACurve) {
    EXPECT_TRUE(std::isnan(at(EASING_easeNone, 0, 0, 1, 0)));
    EXPECT_EQ(at(EASING_easeNone, 1, 0, 1, 0), std::numeric_limits<float>::infinity());
    EXPECT_EQ(at(EASING_easeInExpo, 0, 3, 4, 0), 3);
    EXPECT_EQ(at(EASING_easeOutExpo, 0, 3, 4, 0), 7);
    EXPECT_EQ(at(EASING_easeInElastic, 0, 3, 4, 0), 3);
}

}  // namespace
}  // namespace orvalo
