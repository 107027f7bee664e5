#include "effect/dsp/LevelMeter.h"

#include <gtest/gtest.h>

namespace {

using orvalo::effect::LevelMeter;

TEST(LevelMeter, RisesAtOnceAndFallsSteadily) {
    LevelMeter meter(48000.0);
    EXPECT_EQ(meter.level(), -90.0F);
    meter.update(0.5F, 64);
    EXPECT_NEAR(meter.level(), -6.0206F, 1e-3F);
    meter.update(0.0F, 24000);
    EXPECT_NEAR(meter.level(), -18.0206F, 1e-3F);
    meter.update(1.0F, 64);
    EXPECT_NEAR(meter.level(), 0.0F, 1e-3F);
    meter.update(0.0F, 48000 * 10);
    EXPECT_EQ(meter.level(), -90.0F);
}

TEST(LevelMeter, EmptyBlockChangesNothing) {
    LevelMeter meter(48000.0);
    meter.update(0.25F, 64);
    const float before = meter.level();
    meter.update(0.0F, 0);
    EXPECT_EQ(meter.level(), before);
}

}  // namespace
