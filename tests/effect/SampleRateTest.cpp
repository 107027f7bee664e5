#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "tests/effect/EffectHost.h"

namespace {

using namespace orvalo::testing;

TEST(SampleRate, TimesAreEqualAtEveryRate) {
    for (const double rate : {8000.0, 11025.0, 44100.0, 96000.0, 192000.0, 384000.0}) {
        EffectHost host({.rate = rate});
        ASSERT_TRUE(host.isThere()) << rate;
        host.control("threshold") = -20.0F;
        host.control("ratio") = 2.0F;
        host.control("knee") = 0.0F;
        host.control("attack") = 50.0F;
        host.control("makeup") = 0.0F;
        host.activate();
        const auto frames = static_cast<std::size_t>(rate * 0.05);
        const auto output = host.render(steady(frames, 1.0F));
        const double reduction =
            10.0 * (1.0 - std::exp(-static_cast<double>(frames) / (0.05 * rate)));
        EXPECT_NEAR(output.left.back(), std::pow(10.0, -reduction / 20.0), 1e-5) << rate;
    }
}

TEST(SampleRate, RefusesInvalidRates) {
    for (const double rate : {0.0, -48000.0, 1.0, 1e9, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_FALSE(EffectHost({.rate = rate}).isThere()) << rate;
    }
}

/// Everything that version 0.1 did not have, at once.
void switchEverythingOn(EffectHost& host) {
    for (const char* symbol :
         {"beat", "detector", "auto_makeup", "ceiling_on", "adaptive", "stereo_mode"}) {
        host.control(symbol) = 1.0F;
    }
    host.control("sc_highpass") = 60.0F;
    host.control("sc_lowpass") = 9000.0F;
    host.control("hold") = 5.0F;
    host.control("range") = 20.0F;
    host.control("look_ahead") = 10.0F;
    host.control("link") = 40.0F;
    host.control("oversampling") = 2.0F;
}

TEST(SampleRate, EverythingOnRunsAtEveryRate) {
    for (const double rate : {1000.0, 8000.0, 44100.0, 192000.0, 384000.0, 1536000.0}) {
        EffectHost host({.rate = rate});
        ASSERT_TRUE(host.isThere()) << rate;
        switchEverythingOn(host);
        host.activate();
        EXPECT_EQ(host.render(steady(9000, 0.0F)), steady(9000, 0.0F)) << rate;
        float loudest = 0.0F;
        const auto output = host.render(noiseBursts(40000));
        for (std::size_t i = 0; i < output.left.size(); ++i) {
            ASSERT_TRUE(std::isfinite(output.left[i]) && std::isfinite(output.right[i])) << rate;
            loudest = std::max({loudest, std::abs(output.left[i]), std::abs(output.right[i])});
        }
        EXPECT_GT(loudest, 0.1F) << rate;
        EXPECT_LT(loudest, 0.9F) << rate;
        // What is left of the bursts ends in exact silence: no denormal number circulates.
        const auto silence = steady(9000, 0.0F);
        int blocks = 1;
        while (host.render(silence) != silence && blocks < 60) {
            ++blocks;
        }
        EXPECT_LT(blocks, 60) << rate;
    }
}

}  // namespace
