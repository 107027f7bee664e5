#include "effect/dsp/SpectrumBank.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

using orvalo::effect::SpectrumBank;

std::vector<float> sine(double rate, double hertz, double seconds) {
    std::vector<float> samples(static_cast<std::size_t>(seconds * rate));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<float>(
            std::sin(2.0 * std::numbers::pi * hertz * static_cast<double>(i) / rate));
    }
    return samples;
}

/// The levels at the end of a signal, in blocks of that many frames.
SpectrumBank::Levels levelsOf(double rate, const std::vector<float>& left,
                              const std::vector<float>& right, std::uint32_t block = 64) {
    SpectrumBank bank(rate);
    SpectrumBank::Levels levels{};
    bank.watch();
    for (std::size_t at = 0; at < left.size(); at += block) {
        bank.process(left.data() + at, right.data() + at,
                     static_cast<std::uint32_t>(std::min<std::size_t>(block, left.size() - at)));
    }
    EXPECT_TRUE(bank.takeLevels(levels));
    return levels;
}

TEST(SpectrumBank, ShowsASineInItsBandAtEveryRate) {
    for (const double rate : {44100.0, 48000.0, 96000.0, 192000.0, 384000.0}) {
        for (const std::size_t band : {4U, 17U, 27U, 30U}) {
            const auto signal = sine(rate, SpectrumBank::frequency(band), 1.0);
            const auto levels = levelsOf(rate, signal, signal);
            EXPECT_NEAR(levels[band], 0.0F, 0.5F) << rate << ' ' << band;
            if (band == 30) {
                continue;
            }
            EXPECT_NEAR(levels[band + 1], -9.5F, 3.0F) << rate << ' ' << band;
            // The last band is less steep.
            for (std::size_t other = 0; other < 30; ++other) {
                if (std::max(band, other) - std::min(band, other) >= 3) {
                    EXPECT_LT(levels[other], -22.0F) << rate << ' ' << band << ' ' << other;
                }
            }
        }
    }
}

TEST(SpectrumBank, BandsThatTheRateCannotHoldAreSilent) {
    const auto signal = sine(8000.0, 1000.0, 1.0);
    const auto levels = levelsOf(8000.0, signal, signal);
    EXPECT_NEAR(levels[17], 0.0F, 0.5F);
    for (std::size_t band = 23; band < SpectrumBank::bandCount; ++band) {
        EXPECT_EQ(levels[band], SpectrumBank::lowest) << band;
    }
}

TEST(SpectrumBank, TakesTheLouderChannel) {
    const auto loud = sine(48000.0, 1000.0, 1.0);
    std::vector<float> silent(loud.size());
    auto inverted = loud;
    for (float& sample : inverted) {
        sample = -sample;
    }
    const auto levels = levelsOf(48000.0, loud, silent);
    EXPECT_EQ(levelsOf(48000.0, silent, loud), levels);
    EXPECT_EQ(levelsOf(48000.0, loud, inverted), levels);
}

TEST(SpectrumBank, DoesNotDependOnTheBlocks) {
    for (const double rate : {48000.0, 192000.0}) {
        const auto signal = sine(rate, 300.0, 0.5);
        const auto levels = levelsOf(rate, signal, signal);
        EXPECT_EQ(levelsOf(rate, signal, signal, 1), levels);
        EXPECT_EQ(levelsOf(rate, signal, signal, 37), levels);
    }
}

TEST(SpectrumBank, RunsForTwoSecondsAndGivesLevelsAllTheWhile) {
    constexpr std::uint32_t block = 480;
    const std::vector<float> silence(block);
    SpectrumBank bank(48000.0);
    SpectrumBank::Levels levels{};
    EXPECT_FALSE(bank.isWatched());
    EXPECT_FALSE(bank.takeLevels(levels));
    bank.watch();
    int blocks = 0;
    int given = 0;
    for (; bank.isWatched(); ++blocks) {
        bank.process(silence.data(), silence.data(), block);
        given += bank.takeLevels(levels) ? 1 : 0;
    }
    EXPECT_EQ(blocks, 200);
    EXPECT_EQ(given, 49);
    EXPECT_EQ(levels.front(), SpectrumBank::lowest);
}

}  // namespace
