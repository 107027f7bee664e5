#include "effect/dsp/SideChainFilter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

using orvalo::effect::SideChainFilter;

constexpr double rate = 48000.0;

/// The level of a sine after the filter, in dB relative to that before.
double response(SideChainFilter& filter, double frequency) {
    std::vector<float> left(48000);
    for (std::size_t i = 0; i < left.size(); ++i) {
        const double angle = 2.0 * std::numbers::pi * frequency * static_cast<double>(i) / rate;
        left[i] = static_cast<float>(std::sin(angle));
    }
    auto right = left;
    filter.reset();
    filter.process(left.data(), right.data(), static_cast<std::uint32_t>(left.size()));
    EXPECT_EQ(left, right);
    double power = 0.0;
    const auto half = left.size() / 2;
    for (std::size_t i = half; i < left.size(); ++i) {
        power += static_cast<double>(left[i]) * static_cast<double>(left[i]);
    }
    return 10.0 * std::log10(power / static_cast<double>(half) * 2.0);
}

/// A Butterworth filter of second order made by the bilinear transform, warped to its frequency.
double expected(bool isHighPass, double corner, double frequency) {
    const auto warped = [](double f) { return std::tan(std::numbers::pi * f / rate); };
    const double ratio = warped(frequency) / warped(corner);
    return -10.0 * std::log10(1.0 + std::pow(isHighPass ? 1.0 / ratio : ratio, 4.0));
}

TEST(SideChainFilter, IsOffAtTheEndsOfItsRange) {
    SideChainFilter filter(rate);
    EXPECT_FALSE(filter.isOn());
    filter.configure(SideChainFilter::highPassOff, SideChainFilter::lowPassOff);
    EXPECT_FALSE(filter.isOn());
    filter.configure(20.1F, 20000.0F);
    EXPECT_TRUE(filter.isOn());
}

TEST(SideChainFilter, IsAButterworthFilterOfTwelveDecibelsPerOctave) {
    SideChainFilter filter(rate);
    for (const float corner : {100.0F, 1000.0F, 8000.0F}) {
        for (const double frequency : {50.0, 100.0, 1000.0, 4000.0, 8000.0, 16000.0}) {
            filter.configure(corner, SideChainFilter::lowPassOff);
            const double high = expected(true, static_cast<double>(corner), frequency);
            if (high > -90.0) {
                EXPECT_NEAR(response(filter, frequency), high, 0.01) << corner << ' ' << frequency;
            }
            filter.configure(SideChainFilter::highPassOff, corner);
            const double low = expected(false, static_cast<double>(corner), frequency);
            if (low > -90.0) {
                EXPECT_NEAR(response(filter, frequency), low, 0.01) << corner << ' ' << frequency;
            }
        }
    }
    filter.configure(1000.0F, SideChainFilter::lowPassOff);
    EXPECT_NEAR(response(filter, 1000.0), -3.01, 0.01);
    EXPECT_NEAR(response(filter, 100.0) - response(filter, 50.0), 12.0, 0.1);
}

TEST(SideChainFilter, AnyFrequencyIsStableAtAnyRate) {
    for (const double sampleRate : {1000.0, 8000.0, 384000.0}) {
        SideChainFilter filter(sampleRate);
        filter.configure(19999.0F, 19999.0F);
        std::vector<float> left(100000, 0.0F);
        left[0] = 1.0F;
        auto right = left;
        filter.process(left.data(), right.data(), 100000);
        EXPECT_LT(std::abs(left.back()), 1e-6F) << sampleRate;
        EXPECT_LE(*std::max_element(left.begin(), left.end()), 1.0F) << sampleRate;
    }
}

}  // namespace
