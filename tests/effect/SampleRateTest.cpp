#include <gtest/gtest.h>

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

}  // namespace
