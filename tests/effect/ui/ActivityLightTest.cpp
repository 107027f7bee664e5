#include "effect/ui/model/ActivityLight.h"

#include <gtest/gtest.h>

namespace {

using orvalo::effect::ui::ActivityLight;
using orvalo::effect::ui::BeatLight;

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

TEST(BeatLight, FlashesWhenTheDuckingRisesWhileTheEffectMakesBeats) {
    BeatLight light;
    light.update(12.0F, false, 1.0);
    EXPECT_EQ(light.brightness(1.0), 0.0);
    light.update(3.0F, true, 1.5);
    EXPECT_EQ(light.brightness(1.5), 0.0);
    light.update(12.0F, true, 2.0);
    EXPECT_EQ(light.brightness(2.0), 1.0);
    light.update(12.0F, true, 2.05);
    light.update(9.0F, true, 2.3);
    EXPECT_EQ(light.brightness(2.5), 0.0);
    light.update(9.1F, true, 2.5);
    EXPECT_EQ(light.brightness(2.5), 1.0);
}

}  // namespace
