#include "animation/EnumEasing.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <unordered_set>

#include "animation/EasingName.h"

namespace orvalo {
namespace {

using enum EnumEasing;

TEST(EnumEasing, NumbersItsCasesInOrder) {
    EXPECT_EQ(rawValue(EASING_easeNone), 0);
    EXPECT_EQ(rawValue(EASING_easeInQuad), 1);
    EXPECT_EQ(rawValue(EASING_easeOutInCubic), 8);
    EXPECT_EQ(rawValue(EASING_easeInOutQuart), 11);
    EXPECT_EQ(rawValue(EASING_easeOutQuint), 14);
    EXPECT_EQ(rawValue(EASING_easeInSine), 17);
    EXPECT_EQ(rawValue(EASING_easeOutInExpo), 24);
    EXPECT_EQ(rawValue(EASING_easeInOutCirc), 27);
    EXPECT_EQ(rawValue(EASING_easeOutElastic), 30);
    EXPECT_EQ(rawValue(EASING_easeInBack), 33);
    EXPECT_EQ(rawValue(EASING_easeOutInBounce), 40);
    EXPECT_EQ(rawValue(EASING_easeLast), 41);
}

TEST(EnumEasing, IsMadeFromItsNumbersAndNoOthers) {
    for (std::int64_t number = 0; number <= 41; ++number) {
        const auto type = enumEasing(number);
        ASSERT_TRUE(type.has_value());
        EXPECT_EQ(rawValue(*type), number);
    }
    EXPECT_EQ(enumEasing(41), EASING_easeLast);
    EXPECT_EQ(enumEasing(42), std::nullopt);
    EXPECT_EQ(enumEasing(-1), std::nullopt);
    EXPECT_EQ(enumEasing(std::numeric_limits<std::int64_t>::max()), std::nullopt);
    EXPECT_EQ(enumEasing(std::numeric_limits<std::int64_t>::min()), std::nullopt);
}

TEST(EnumEasing, IsHashedByItsNumber) {
    EXPECT_EQ(std::hash<EnumEasing>()(EASING_easeOutBack), std::hash<std::int64_t>()(34));
    const std::unordered_set<EnumEasing> set{EASING_easeOutBack, EASING_easeInBack,
                                             EASING_easeOutBack};
    EXPECT_EQ(set.size(), 2U);
}

TEST(EasingName, IsTheCasesName) {
    EXPECT_EQ(easingName(EASING_easeNone), "easeNone");
    EXPECT_EQ(easingName(EASING_easeInQuad), "easeInQuad");
    EXPECT_EQ(easingName(EASING_easeOutInCubic), "easeOutInCubic");
    EXPECT_EQ(easingName(EASING_easeOutQuart), "easeOutQuart");
    EXPECT_EQ(easingName(EASING_easeInOutQuint), "easeInOutQuint");
    EXPECT_EQ(easingName(EASING_easeInSine), "easeInSine");
    EXPECT_EQ(easingName(EASING_easeOutExpo), "easeOutExpo");
    EXPECT_EQ(easingName(EASING_easeInOutCirc), "easeInOutCirc");
    EXPECT_EQ(easingName(EASING_easeOutInElastic), "easeOutInElastic");
    EXPECT_EQ(easingName(EASING_easeInBack), "easeInBack");
    EXPECT_EQ(easingName(EASING_easeOutInBounce), "easeOutInBounce");
}

TEST(EasingName, IsEmptyForWhatIsNoCurve) {
    EXPECT_EQ(easingName(EASING_easeLast), "");
    EXPECT_EQ(easingName(static_cast<EnumEasing>(-1)), "");
}

}  // namespace
}  // namespace orvalo
