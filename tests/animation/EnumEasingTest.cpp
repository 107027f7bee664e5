#include "animation/EnumEasing.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <unordered_set>

#include "animation/EasingCurve.h"

namespace orvalo {
namespace {

using enum EnumEasing;

struct Named {
    EnumEasing type;
    const char* name;
};

/// The curves in the order of their numbers.
constexpr std::array<Named, 41> kCurves{{{EASING_easeNone, "easeNone"},
                                         {EASING_easeInQuad, "easeInQuad"},
                                         {EASING_easeOutQuad, "easeOutQuad"},
                                         {EASING_easeInOutQuad, "easeInOutQuad"},
                                         {EASING_easeOutInQuad, "easeOutInQuad"},
                                         {EASING_easeInCubic, "easeInCubic"},
                                         {EASING_easeOutCubic, "easeOutCubic"},
                                         {EASING_easeInOutCubic, "easeInOutCubic"},
                                         {EASING_easeOutInCubic, "easeOutInCubic"},
                                         {EASING_easeInQuart, "easeInQuart"},
                                         {EASING_easeOutQuart, "easeOutQuart"},
                                         {EASING_easeInOutQuart, "easeInOutQuart"},
                                         {EASING_easeOutInQuart, "easeOutInQuart"},
                                         {EASING_easeInQuint, "easeInQuint"},
                                         {EASING_easeOutQuint, "easeOutQuint"},
                                         {EASING_easeInOutQuint, "easeInOutQuint"},
                                         {EASING_easeOutInQuint, "easeOutInQuint"},
                                         {EASING_easeInSine, "easeInSine"},
                                         {EASING_easeOutSine, "easeOutSine"},
                                         {EASING_easeInOutSine, "easeInOutSine"},
                                         {EASING_easeOutInSine, "easeOutInSine"},
                                         {EASING_easeInExpo, "easeInExpo"},
                                         {EASING_easeOutExpo, "easeOutExpo"},
                                         {EASING_easeInOutExpo, "easeInOutExpo"},
                                         {EASING_easeOutInExpo, "easeOutInExpo"},
                                         {EASING_easeInCirc, "easeInCirc"},
                                         {EASING_easeOutCirc, "easeOutCirc"},
                                         {EASING_easeInOutCirc, "easeInOutCirc"},
                                         {EASING_easeOutInCirc, "easeOutInCirc"},
                                         {EASING_easeInElastic, "easeInElastic"},
                                         {EASING_easeOutElastic, "easeOutElastic"},
                                         {EASING_easeInOutElastic, "easeInOutElastic"},
                                         {EASING_easeOutInElastic, "easeOutInElastic"},
                                         {EASING_easeInBack, "easeInBack"},
                                         {EASING_easeOutBack, "easeOutBack"},
                                         {EASING_easeInOutBack, "easeInOutBack"},
                                         {EASING_easeOutInBack, "easeOutInBack"},
                                         {EASING_easeInBounce, "easeInBounce"},
                                         {EASING_easeOutBounce, "easeOutBounce"},
                                         {EASING_easeInOutBounce, "easeInOutBounce"},
                                         {EASING_easeOutInBounce, "easeOutInBounce"}}};

TEST(EnumEasing, CountsItsCasesInOrder) {
    for (std::size_t number = 0; number < kCurves.size(); ++number) {
        EXPECT_EQ(rawValue(kCurves[number].type), static_cast<std::int64_t>(number));
    }
    EXPECT_EQ(rawValue(EASING_easeLast), 41);
}

TEST(EnumEasing, AcceptsItsRawValuesOnly) {
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

TEST(EnumEasing, IsHashedByItsRawValue) {
    EXPECT_EQ(std::hash<EnumEasing>()(EASING_easeOutBack), std::hash<std::int64_t>()(34));
    const std::unordered_set<EnumEasing> set{EASING_easeOutBack, EASING_easeInBack,
                                             EASING_easeOutBack};
    EXPECT_EQ(set.size(), 2U);
}

TEST(EasingName, IsTheNameOfTheCase) {
    for (const auto& [type, name] : kCurves) {
        EXPECT_EQ(easingName(type), name);
    }
}

TEST(EasingName, IsEmptyForInvalidValues) {
    EXPECT_EQ(easingName(EASING_easeLast), "");
    EXPECT_EQ(easingName(static_cast<EnumEasing>(-1)), "");
}

}  // namespace
}  // namespace orvalo
