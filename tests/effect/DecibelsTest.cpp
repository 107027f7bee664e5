#include "effect/dsp/Decibels.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace orvalo::effect;

TEST(Decibels, LevelIsWithinATenThousandthDecibelOverTheWholeRange) {
    for (int step = -16000; step <= 30000; ++step) {
        const double decibels = 0.01 * step;
        const auto amplitude = static_cast<float>(std::pow(10.0, decibels / 20.0));
        const double exact = 20.0 * std::log10(static_cast<double>(amplitude));
        ASSERT_NEAR(decibelsFromAmplitude(amplitude), exact, 1e-4) << decibels;
    }
}

TEST(Decibels, ClampsToSilence) {
    for (const float amplitude : {0.0F, 1e-30F, 1e-9F, 1e-8F}) {
        EXPECT_NEAR(decibelsFromAmplitude(amplitude), silenceDecibels, 1e-4);
    }
}

TEST(Decibels, FactorIsWithinATenThousandthDecibelOverTheWholeRange) {
    for (int step = -55000; step <= 55000; ++step) {
        const double decibels = 0.01 * step;
        const auto factor =
            static_cast<double>(amplitudeFromDecibels(static_cast<float>(decibels)));
        ASSERT_NEAR(20.0 * std::log10(factor), static_cast<double>(static_cast<float>(decibels)),
                    1e-4)
            << decibels;
    }
}

TEST(Decibels, ZeroDecibelsIsExactlyOne) {
    EXPECT_EQ(amplitudeFromDecibels(0.0F), 1.0F);
    EXPECT_EQ(decibelsFromAmplitude(1.0F), 0.0F);
}

}  // namespace
