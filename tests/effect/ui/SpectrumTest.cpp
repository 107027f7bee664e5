#include "effect/ui/model/Spectrum.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using orvalo::effect::SpectrumBank;
using orvalo::effect::ui::Spectrum;

Spectrum::Levels all(float level) {
    Spectrum::Levels levels{};
    levels.fill(level);
    return levels;
}

TEST(Spectrum, TakesWhatVisiblyChanges) {
    Spectrum spectrum;
    EXPECT_EQ(spectrum.levels(), all(SpectrumBank::lowest));
    EXPECT_FALSE(spectrum.take(all(SpectrumBank::lowest)));
    EXPECT_TRUE(spectrum.take(all(-20.0F)));
    EXPECT_FALSE(spectrum.take(all(-20.001F)));
    auto levels = all(-20.0F);
    levels[3] = std::numeric_limits<float>::quiet_NaN();
    levels[4] = std::numeric_limits<float>::infinity();
    EXPECT_FALSE(spectrum.take(levels));
    EXPECT_EQ(spectrum.levels(), all(-20.0F));
}

TEST(Spectrum, FallsToSilence) {
    Spectrum spectrum;
    spectrum.take(all(-20.0F));
    EXPECT_TRUE(spectrum.fall(0.5));
    EXPECT_EQ(spectrum.levels(), all(-50.0F));
    EXPECT_TRUE(spectrum.fall(1.0));
    EXPECT_EQ(spectrum.levels(), all(SpectrumBank::lowest));
    EXPECT_FALSE(spectrum.fall(1.0));
}

}  // namespace
