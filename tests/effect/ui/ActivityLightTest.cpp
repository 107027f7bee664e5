#include "effect/ui/model/ActivityLight.h"

#include <gtest/gtest.h>

namespace {

using orvalo::effect::ui::ActivityLight;

TEST(ActivityLight, IsDarkUntilTheCountChanges) {
    ActivityLight light;
    EXPECT_EQ(light.brightness(1.0), 0.0);
    light.update(500.0F, 1.0);
    EXPECT_EQ(light.brightness(1.0), 0.0);
    light.update(500.0F, 2.0);
    EXPECT_EQ(light.brightness(2.0), 0.0);
}

TEST(ActivityLight, FlashesAndFades) {
    ActivityLight light;
    light.update(65535.0F, 1.0);
    light.update(0.0F, 2.0);
    EXPECT_EQ(light.brightness(2.0), 1.0);
    EXPECT_EQ(light.brightness(2.0 + ActivityLight::fullSeconds / 2), 1.0);
    const double halfway = 2.0 + ActivityLight::fullSeconds + ActivityLight::fadingSeconds / 2;
    EXPECT_NEAR(light.brightness(halfway), 0.5, 1e-9);
    EXPECT_EQ(light.brightness(3.0), 0.0);
}

}  // namespace
