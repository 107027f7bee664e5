#include "effect/dsp/GainComputer.h"

#include <gtest/gtest.h>

namespace {

using orvalo::effect::GainComputer;

/// The textbook formula with its three cases, in double.
double expectedReduction(double level, double threshold, double ratio, double knee) {
    const double excess = level - threshold;
    const double slope = 1.0 - 1.0 / ratio;
    if (2.0 * excess <= -knee) {
        return 0.0;
    }
    if (2.0 * excess < knee) {
        return slope * (excess + knee / 2.0) * (excess + knee / 2.0) / (2.0 * knee);
    }
    return slope * excess;
}

float reduction(float level, float threshold, float ratio, float knee) {
    return GainComputer::reduction(level, threshold, GainComputer::slopeFromRatio(ratio), knee);
}

TEST(GainComputer, FollowsTheCurveForManySettings) {
    for (const float threshold : {-60.0F, -33.3F, -18.0F, -6.0F, 0.0F}) {
        for (const float ratio : {1.0F, 1.5F, 2.0F, 4.0F, 10.0F, 20.0F}) {
            for (const float knee : {0.0F, 0.5F, 3.0F, 6.0F, 12.0F, 24.0F}) {
                for (int step = -432; step <= 162; ++step) {
                    const float level = 0.37F * static_cast<float>(step);
                    ASSERT_NEAR(reduction(level, threshold, ratio, knee),
                                expectedReduction(level, threshold, ratio, knee), 1e-3)
                        << level << ' ' << threshold << ' ' << ratio << ' ' << knee;
                }
            }
        }
    }
}

TEST(GainComputer, HasKnownPoints) {
    EXPECT_NEAR(reduction(-8.0F, -20.0F, 4.0F, 0.0F), 9.0F, 1e-3);    // 12 dB over, 3 remain
    EXPECT_NEAR(reduction(-20.0F, -20.0F, 4.0F, 8.0F), 0.75F, 1e-5);  // knee / 8 * slope
    EXPECT_NEAR(reduction(-16.0F, -20.0F, 4.0F, 8.0F), 3.0F, 1e-5);   // the knee's upper end
    EXPECT_EQ(reduction(-24.0F, -20.0F, 4.0F, 8.0F), 0.0F);           // the knee's lower end
    EXPECT_EQ(reduction(-8.0F, -20.0F, 1.0F, 6.0F), 0.0F);            // a ratio of 1 does nothing
}

TEST(GainComputer, NeverFallsAsTheLevelRises) {
    float before = 0.0F;
    for (int step = -8000; step <= 2000; ++step) {
        const float level = 0.01F * static_cast<float>(step);
        const float now = reduction(level, -18.0F, 4.0F, 12.0F);
        ASSERT_GE(now, before) << level;
        before = now;
    }
}

}  // namespace
