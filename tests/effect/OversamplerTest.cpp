#include "effect/dsp/Oversampler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

using orvalo::effect::chunkFrames;
using orvalo::effect::Oversampler;

std::vector<float> sine(double perFrame, std::size_t frames) {
    std::vector<float> samples(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        samples[i] = static_cast<float>(
            std::sin(2.0 * std::numbers::pi * perFrame * static_cast<double>(i)));
    }
    return samples;
}

std::vector<float> up(Oversampler& oversampler, std::uint32_t factor,
                      const std::vector<float>& samples) {
    std::vector<float> result(samples.size() * factor);
    const std::size_t most = chunkFrames / factor;
    for (std::size_t i = 0; i < samples.size(); i += most) {
        oversampler.up(samples.data() + i, result.data() + i * factor,
                       static_cast<std::uint32_t>(std::min(most, samples.size() - i)));
    }
    return result;
}

std::vector<float> down(Oversampler& oversampler, std::uint32_t factor,
                        const std::vector<float>& samples) {
    std::vector<float> result(samples.size() / factor);
    const std::size_t most = chunkFrames / factor;
    for (std::size_t i = 0; i < result.size(); i += most) {
        oversampler.down(samples.data() + i * factor, result.data() + i,
                         static_cast<std::uint32_t>(std::min(most, result.size() - i)));
    }
    return result;
}

TEST(Oversampler, UpAndDownIsADelay) {
    for (const std::uint32_t factor : {2U, 4U}) {
        for (const double perFrame : {0.001, 0.1, 0.25, 0.4}) {
            Oversampler oversampler(factor);
            const auto input = sine(perFrame, 4000);
            const auto output = down(oversampler, factor, up(oversampler, factor, input));
            for (std::size_t i = 1000; i < output.size(); ++i) {
                ASSERT_NEAR(output[i], input[i - Oversampler::latency], 2e-5F)
                    << factor << ' ' << perFrame << ' ' << i;
            }
        }
    }
}

TEST(Oversampler, InterpolatesTheSine) {
    for (const std::uint32_t factor : {2U, 4U}) {
        Oversampler oversampler(factor);
        const double perFrame = 0.37;
        const auto output = up(oversampler, factor, sine(perFrame, 2000));
        const auto exact = sine(perFrame / factor, std::size_t{2000} * factor);
        const std::size_t delay = factor * Oversampler::latency / 2;
        for (std::size_t i = 1000; i < output.size(); ++i) {
            ASSERT_NEAR(output[i], exact[i - delay], 1e-5F) << factor << ' ' << i;
        }
    }
}

TEST(Oversampler, RemovesWhatWouldFoldBack) {
    for (const std::uint32_t factor : {2U, 4U}) {
        for (const double perFrame : {0.6, 0.8, 0.99, 1.3, 1.6, 1.95}) {
            if (perFrame > 0.5 * factor) {
                continue;
            }
            Oversampler oversampler(factor);
            const auto output =
                down(oversampler, factor, sine(perFrame / factor, std::size_t{2000} * factor));
            float highest = 0.0F;
            for (std::size_t i = 1000; i < output.size(); ++i) {
                highest = std::max(highest, std::abs(output[i]));
            }
            EXPECT_LT(20.0 * std::log10(highest), -108.0) << factor << ' ' << perFrame;
        }
    }
}

TEST(Oversampler, ResetClearsTheState) {
    Oversampler oversampler(2);
    const auto input = sine(0.1, 200);
    const auto first = down(oversampler, 2, up(oversampler, 2, input));
    oversampler.reset();
    EXPECT_EQ(down(oversampler, 2, up(oversampler, 2, input)), first);
}

}  // namespace
