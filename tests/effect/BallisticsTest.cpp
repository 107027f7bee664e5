#include "effect/dsp/Ballistics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace {

using orvalo::effect::Ballistics;

struct Run {
    std::vector<float> held;
    std::vector<float> reduction;
};

Run process(Ballistics& ballistics, const std::vector<float>& asked) {
    Run run{.held = std::vector<float>(asked.size()),
            .reduction = std::vector<float>(asked.size())};
    ballistics.process(asked.data(), run.held.data(), run.reduction.data(),
                       static_cast<std::uint32_t>(asked.size()));
    return run;
}

std::vector<float> constant(float value, std::size_t frames) {
    std::vector<float> values(frames, value);
    return values;
}

class BallisticsAtRate : public testing::TestWithParam<double> {};

TEST_P(BallisticsAtRate, RisesExponentiallyWithTheAttackTime) {
    const double rate = GetParam();
    for (const float attack : {0.1F, 1.0F, 25.0F, 200.0F}) {
        Ballistics ballistics(rate);
        ballistics.setTimes(attack, 100.0F);
        const auto frames = static_cast<std::size_t>(rate * 0.3);
        const auto run = process(ballistics, constant(12.0F, frames));
        for (std::size_t i = 0; i < frames; ++i) {
            const double time = static_cast<double>(i + 1) / rate;
            const double exact =
                12.0 * (1.0 - std::exp(-time / (0.001 * static_cast<double>(attack))));
            ASSERT_NEAR(run.reduction[i], exact, 1e-5) << attack << " ms, frame " << i;
        }
    }
}

TEST_P(BallisticsAtRate, HoldsAPeakAndDecaysWithTheReleaseTime) {
    const double rate = GetParam();
    for (const float release : {5.0F, 80.0F, 2000.0F}) {
        Ballistics ballistics(rate);
        ballistics.setTimes(0.1F, release);
        process(ballistics, constant(20.0F, static_cast<std::size_t>(rate * 0.1)));
        const auto frames = static_cast<std::size_t>(rate * 0.5);
        // Towards 5 dB instead of 0: the approach must not stall before its target.
        const auto run = process(ballistics, constant(5.0F, frames));
        for (std::size_t i = 0; i < frames; ++i) {
            const double time = static_cast<double>(i + 1) / rate;
            const double exact =
                5.0 + 15.0 * std::exp(-time / (0.001 * static_cast<double>(release)));
            ASSERT_NEAR(run.held[i], exact, 1e-4) << release << " ms, frame " << i;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Rates, BallisticsAtRate, testing::Values(8000.0, 48000.0, 384000.0));

TEST(Ballistics, FallsInTwoStages) {
    constexpr double rate = 48000.0;
    constexpr double attack = 0.030;
    constexpr double release = 0.100;
    Ballistics ballistics(rate);
    ballistics.setTimes(30.0F, 100.0F);
    process(ballistics, constant(10.0F, 96000));
    const auto run = process(ballistics, constant(0.0F, 24000));
    for (std::size_t i = 0; i < run.reduction.size(); i += 100) {
        const double time = static_cast<double>(i + 1) / rate;
        const double exact =
            10.0 * (release * std::exp(-time / release) - attack * std::exp(-time / attack)) /
            (release - attack);
        // The formula is for continuous time; frames of 21 us differ by at most this much.
        ASSERT_NEAR(run.reduction[i], exact, 5e-3) << i;
    }
}

TEST(Ballistics, SteadyToneGivesSteadyReduction) {
    Ballistics ballistics(48000.0);
    ballistics.setTimes(10.0F, 200.0F);
    std::vector<float> asked(48000);
    for (std::size_t i = 0; i < asked.size(); ++i) {
        const double phase = 2.0 * std::numbers::pi * 100.0 * static_cast<double>(i) / 48000.0;
        asked[i] = static_cast<float>(10.0 * std::abs(std::sin(phase)));
    }
    const auto run = process(ballistics, asked);
    float lowest = 100.0F;
    float highest = 0.0F;
    for (std::size_t i = 24000; i < asked.size(); ++i) {
        lowest = std::min(lowest, run.reduction[i]);
        highest = std::max(highest, run.reduction[i]);
    }
    EXPECT_GT(lowest, 9.7F);
    EXPECT_LT(highest - lowest, 0.05F);
}

TEST(Ballistics, ResetClearsTheState) {
    Ballistics ballistics(48000.0);
    process(ballistics, constant(20.0F, 4800));
    ballistics.reset();
    const auto run = process(ballistics, constant(0.0F, 4));
    EXPECT_EQ(run.reduction, constant(0.0F, 4));
}

TEST(Ballistics, HoldsAPeakForExactlyTheHoldTime) {
    Ballistics ballistics(48000.0);
    ballistics.setTimes(1.0F, 50.0F);
    ballistics.setHold(480);
    process(ballistics, constant(10.0F, 1));
    const auto run = process(ballistics, constant(0.0F, 1000));
    for (std::size_t i = 0; i < 480; ++i) {
        ASSERT_EQ(run.held[i], 10.0F) << i;
    }
    for (std::size_t i = 480; i < 1000; ++i) {
        ASSERT_NEAR(run.held[i], 10.0 * std::exp(-static_cast<double>(i - 479) / 2400.0), 1e-5)
            << i;
    }
}

TEST(Ballistics, HigherPeakStartsAnotherHold) {
    Ballistics ballistics(48000.0);
    ballistics.setTimes(1.0F, 50.0F);
    ballistics.setHold(100);
    process(ballistics, constant(10.0F, 1));
    process(ballistics, constant(0.0F, 90));
    process(ballistics, constant(11.0F, 1));
    const auto run = process(ballistics, constant(0.0F, 101));
    EXPECT_EQ(run.held[99], 11.0F);
    EXPECT_LT(run.held[100], 11.0F);
}

TEST(Ballistics, AdaptiveSmoothingHoldsALowToneStill) {
    Ballistics ballistics(48000.0);
    ballistics.setTimes(0.1F, 45.0F);
    ballistics.setAdaptive(true);
    std::vector<float> asked(48000);
    for (std::size_t i = 0; i < asked.size(); ++i) {
        const double phase = 2.0 * std::numbers::pi * 50.0 * static_cast<double>(i) / 48000.0;
        asked[i] = static_cast<float>(10.0 * std::abs(std::sin(phase)));
    }
    const auto run = process(ballistics, asked);
    for (std::size_t i = 24000; i < asked.size(); ++i) {
        ASSERT_NEAR(run.reduction[i], 10.0F, 1e-4F) << i;
    }
    // After the tone, the release starts at most 30 ms later.
    const auto after = process(ballistics, constant(0.0F, 4800));
    EXPECT_LT(after.held[1440], 10.0F);
    EXPECT_LT(after.held[1440 + 2160], 3.7F);
}

}  // namespace
