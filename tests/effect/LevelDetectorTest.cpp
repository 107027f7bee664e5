#include "effect/dsp/LevelDetector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "effect/dsp/Chunk.h"
#include "effect/dsp/ScopedFlushToZero.h"

namespace {

using orvalo::effect::chunkFrames;
using orvalo::effect::LevelDetector;

std::vector<float> linked(LevelDetector& detector, const std::vector<float>& left,
                          const std::vector<float>& right) {
    std::vector<float> amplitude(left.size());
    for (std::size_t i = 0; i < left.size(); i += chunkFrames) {
        detector.linked(
            left.data() + i, right.data() + i, amplitude.data() + i,
            static_cast<std::uint32_t>(std::min<std::size_t>(chunkFrames, left.size() - i)));
    }
    return amplitude;
}

TEST(LevelDetector, PeakIsTheLouderChannel) {
    LevelDetector detector(48000.0);
    detector.configure(false, 10.0F);
    EXPECT_EQ(linked(detector, {0.5F, -0.25F, 0.0F}, {-0.1F, 0.75F, 0.0F}),
              (std::vector<float>{0.5F, 0.75F, 0.0F}));
}

TEST(LevelDetector, RmsOfASineIsThreeDecibelsBelowItsPeak) {
    LevelDetector detector(48000.0);
    detector.configure(true, 50.0F);
    std::vector<float> sine(96000);
    for (std::size_t i = 0; i < sine.size(); ++i) {
        sine[i] = 0.5F * std::sin(0.3F * static_cast<float>(i % 62832));
    }
    const auto amplitude = linked(detector, std::vector<float>(sine.size()), sine);
    EXPECT_NEAR(20.0 * std::log10(amplitude.back() / 0.5), -3.01, 0.02);
}

TEST(LevelDetector, WindowIsTheTimeConstantOfThePower) {
    for (const float window : {1.0F, 30.0F, 100.0F}) {
        LevelDetector detector(48000.0);
        detector.configure(true, window);
        const auto frames = static_cast<std::size_t>(48.0F * window);
        const std::vector<float> one(frames, 1.0F);
        const auto amplitude = linked(detector, one, one);
        EXPECT_NEAR(amplitude.back() * amplitude.back(), 1.0 - std::exp(-1.0), 1e-4) << window;
    }
}

TEST(LevelDetector, ExactCrestsAreThoseBetweenTheFrames) {
    std::vector<float> sine(4 * chunkFrames + 5);
    for (std::size_t i = 0; i < sine.size(); ++i) {
        sine[i] = std::sin(0.1636F * static_cast<float>(i));
    }
    const std::vector<float> silence(sine.size());
    LevelDetector detector(192000.0, LevelDetector::Crests::exact);
    detector.configure(false, 10.0F);
    const auto amplitude = linked(detector, silence, sine);
    std::size_t crests = 0;
    for (std::size_t i = 1; i < sine.size(); ++i) {
        const float before = std::abs(sine[i - 1]);
        const float beforeThat = i < 2 ? 1.0F : std::abs(sine[i - 2]);
        const bool isCrest = before >= beforeThat && before > std::abs(sine[i]);
        if (isCrest) {
            EXPECT_NEAR(amplitude[i], 1.0F, 3e-5F) << i;
            ++crests;
        } else {
            EXPECT_EQ(amplitude[i], before) << i;
        }
    }
    EXPECT_EQ(crests, 27U);
    // A crest is found across the end of a block, too.
    detector.reset();
    std::vector<float> one(sine.size());
    for (std::size_t i = 0; i < sine.size(); ++i) {
        detector.linked(&silence[i], &sine[i], &one[i], 1);
    }
    EXPECT_EQ(one, amplitude);
}

TEST(LevelDetector, ExactCrestsOfTheSmallestNumbersAreFinite) {
    constexpr float smallest = std::numeric_limits<float>::min();
    const orvalo::effect::ScopedFlushToZero flushToZero;
    LevelDetector detector(192000.0, LevelDetector::Crests::exact);
    detector.configure(false, 10.0F);
    const std::vector<float> steps{smallest, 1.5F * smallest, smallest, 1.5F * smallest, 0.0F};
    EXPECT_EQ(linked(detector, steps, steps),
              (std::vector<float>{0.0F, smallest, 1.5F * smallest, smallest, 1.5F * smallest}));
}

TEST(LevelDetector, ChannelsAreSeparate) {
    LevelDetector detector(48000.0);
    for (const bool isRms : {false, true}) {
        detector.configure(isRms, 1.0F);
        const std::vector<float> left(64, 1.0F);
        const std::vector<float> right(64, 0.0F);
        std::vector<float> one(64);
        std::vector<float> other(64);
        detector.separate(left.data(), right.data(), one.data(), other.data(), 64);
        EXPECT_GT(one.back(), 0.5F);
        EXPECT_EQ(other, right);
    }
}

}  // namespace
