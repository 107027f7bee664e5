#include "effect/dsp/SmoothedValue.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using orvalo::effect::SmoothedValue;

std::vector<float> take(SmoothedValue& value, std::uint32_t frames) {
    std::vector<float> values(frames);
    value.fill(values.data(), frames);
    return values;
}

TEST(SmoothedValue, MovesInEqualStepsOverTwentyMilliseconds) {
    SmoothedValue value(1000.0);
    value.snapTo(10.0F);
    value.setTarget(30.0F);
    const auto values = take(value, 22);
    for (std::size_t i = 0; i < 20; ++i) {
        EXPECT_FLOAT_EQ(values[i], 11.0F + static_cast<float>(i));
    }
    EXPECT_EQ(values[19], 30.0F);
    EXPECT_EQ(values[21], 30.0F);
    EXPECT_FALSE(value.isMoving());
}

TEST(SmoothedValue, RampDoesNotDependOnBlockLengths) {
    SmoothedValue whole(48000.0);
    SmoothedValue cut(48000.0);
    whole.setTarget(-17.3F);
    cut.setTarget(-17.3F);
    const auto expected = take(whole, 1000);
    std::vector<float> values;
    for (std::uint32_t length = 1; values.size() < 1000; length = length % 37 + 1) {
        cut.setTarget(-17.3F);
        const auto part = take(cut, length);
        values.insert(values.end(), part.begin(), part.end());
    }
    values.resize(1000);
    EXPECT_EQ(values, expected);
}

TEST(SmoothedValue, NewTargetStartsFromTheCurrentValue) {
    SmoothedValue value(1000.0);
    value.setTarget(20.0F);
    EXPECT_FLOAT_EQ(take(value, 10).back(), 10.0F);
    value.setTarget(0.0F);
    EXPECT_FLOAT_EQ(take(value, 1).front(), 9.5F);
    EXPECT_EQ(take(value, 19).back(), 0.0F);
}

TEST(SmoothedValue, SnapToSetsTheValueAtOnce) {
    SmoothedValue value(48000.0);
    value.setTarget(5.0F);
    value.snapTo(3.0F);
    EXPECT_EQ(take(value, 2), (std::vector<float>{3.0F, 3.0F}));
}

}  // namespace
