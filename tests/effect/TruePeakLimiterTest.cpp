#include "effect/dsp/TruePeakLimiter.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <numbers>
#include <random>
#include <string>

#include "tests/effect/TruePeakMeter.h"

namespace {

using namespace orvalo::effect;
using orvalo::testing::truePeak;

using Samples = std::vector<float>;

/// Limits both channels, in the longest chunks.
void limit(TruePeakLimiter& limiter, Samples& left, Samples& right) {
    for (std::size_t i = 0; i < left.size(); i += chunkFrames) {
        const auto count =
            static_cast<std::uint32_t>(std::min<std::size_t>(chunkFrames, left.size() - i));
        limiter.process(left.data() + i, right.data() + i, count);
    }
}

/// Signals of 0.5 s at 48 kHz that are hard to limit.
std::map<std::string, Samples> hardSignals() {
    constexpr std::size_t frames = 24000;
    std::mt19937 random(7);
    const auto unit = [&random] {
        return 2.0F * (static_cast<float>(random()) / 4294967296.0F) - 1.0F;
    };
    std::map<std::string, Samples> signals;
    const auto add = [&](const std::string& name, const std::function<float(std::size_t)>& sample) {
        auto& signal = signals[name];
        for (std::size_t i = 0; i < frames; ++i) {
            signal.push_back(sample(i));
        }
    };
    const auto sine = [](double perFrame, std::size_t i) {
        return static_cast<float>(
            std::sin(2.0 * std::numbers::pi * perFrame * static_cast<double>(i) + 0.8));
    };
    add("noise", [&](std::size_t) { return unit(); });
    add("loud noise", [&](std::size_t) { return 8.0F * unit(); });
    add("noise bursts", [&](std::size_t i) { return i / 700 % 3 == 0 ? 2.0F * unit() : 0.0F; });
    add("square wave of 1 kHz", [](std::size_t i) { return i / 24 % 2 == 0 ? 1.0F : -1.0F; });
    add("square wave of 6 kHz", [](std::size_t i) { return i / 4 % 2 == 0 ? 1.0F : -1.0F; });
    add("square wave of 55 Hz",
        [](std::size_t i) { return i * 55 / 24000 % 2 == 0 ? 1.5F : -1.5F; });
    add("quarter of the rate", [&](std::size_t i) { return sine(0.25, i); });
    add("tone bursts",
        [&](std::size_t i) { return i / 500 % 2 == 0 ? 2.0F * sine(0.021, i) : 0.0F; });
    add("high tone bursts",
        [&](std::size_t i) { return i / 90 % 5 == 0 ? 2.0F * sine(0.24, i) : 0.1F; });
    // Much louder between the samples than at them, and than the ceiling.
    add("very loud tone bursts",
        [&](std::size_t i) { return i / 90 % 20 == 7 ? 60.0F * sine(0.25, i) : 0.0F; });
    add("impulses", [](std::size_t i) { return i % 997 == 0 ? 4.0F : 0.0F; });
    add("random signs", [&](std::size_t) { return unit() > 0.0F ? 1.0F : -1.0F; });
    add("rising sweep", [](std::size_t i) {
        const auto at = static_cast<double>(i);
        return 1.4F * static_cast<float>(std::sin(1e-4 * at * at / 1.6));
    });
    return signals;
}

TEST(TruePeakLimiter, KeepsEveryTruePeakBelowTheCeiling) {
    for (const float ceiling : {-0.1F, -1.0F, -12.0F}) {
        for (const auto& [name, signal] : hardSignals()) {
            TruePeakLimiter limiter(48000.0);
            limiter.setCeiling(ceiling, true);
            Samples left = signal;
            Samples right(signal.rbegin(), signal.rend());
            limit(limiter, left, right);
            EXPECT_LT(truePeak(left), ceiling + 0.1F) << name;
            EXPECT_LT(truePeak(right), ceiling + 0.1F) << name;
            EXPECT_GT(std::max(truePeak(left), truePeak(right)), ceiling - 0.5F) << name;
        }
    }
}

TEST(TruePeakLimiter, OnlyDelaysWhatStaysBelowTheCeiling) {
    for (const double rate : {8000.0, 48000.0, 384000.0}) {
        TruePeakLimiter limiter(rate);
        limiter.setCeiling(-1.0F, true);
        Samples left(10000);
        std::mt19937 random(3);
        for (float& sample : left) {
            sample = 0.3F * (static_cast<float>(random()) / 4294967296.0F);
        }
        Samples right(left.size(), 0.0F);
        const Samples input = left;
        limit(limiter, left, right);
        const std::size_t latency = limiter.latency();
        for (std::size_t i = 0; i < left.size(); ++i) {
            ASSERT_EQ(left[i], i < latency ? 0.0F : input[i - latency]) << rate << ' ' << i;
        }
        EXPECT_EQ(right, Samples(left.size(), 0.0F));
    }
}

TEST(TruePeakLimiter, GainReturnsAfterAPeak) {
    TruePeakLimiter limiter(48000.0);
    limiter.setCeiling(-6.0F, true);
    Samples left(48000, 0.1F);
    left[100] = 8.0F;
    Samples right = left;
    limit(limiter, left, right);
    EXPECT_LT(left[100 + limiter.latency() + 50], 0.05F);
    EXPECT_NEAR(left.back(), 0.1F, 1e-4F);
}

TEST(TruePeakLimiter, ChunksChangeNothing) {
    const auto signal = hardSignals().at("loud noise");
    Samples left = signal;
    Samples right = signal;
    TruePeakLimiter limiter(48000.0);
    limiter.setCeiling(-3.0F, true);
    limit(limiter, left, right);
    TruePeakLimiter other(48000.0);
    other.setCeiling(-3.0F, true);
    Samples otherLeft = signal;
    Samples otherRight = signal;
    for (std::size_t i = 0; i < signal.size(); i += 7) {
        const auto count = static_cast<std::uint32_t>(std::min<std::size_t>(7, signal.size() - i));
        other.process(otherLeft.data() + i, otherRight.data() + i, count);
    }
    EXPECT_EQ(otherLeft, left);
    EXPECT_EQ(otherRight, right);
}

}  // namespace
