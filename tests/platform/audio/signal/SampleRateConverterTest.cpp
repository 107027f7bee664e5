#include "platform/audio/signal/SampleRateConverter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <vector>

#include "platform/audio/signal/AVAudioPCMBuffer.h"

namespace orvalo::testing {
namespace {

constexpr double kTwoPi = 6.283185307179586;

struct Rates {
    double from;
    double to;
};

// The mono conversion of signal(frame), in calls whose sizes next() returns.
std::vector<float> converted(const Rates& rates, std::size_t frames,
                             const std::function<float(std::size_t)>& signal,
                             const std::function<std::uint32_t()>& next) {
    SampleRateConverter converter({rates.from, 1}, {rates.to, 1});
    const AVAudioPCMBuffer input({rates.from, 1}, 200000);
    const AVAudioPCMBuffer output({rates.to, 1}, kMaximumFramesToRender);
    std::vector<float> result;
    std::size_t taken = 0;
    while (result.size() < frames) {
        const auto count = std::min(next(), static_cast<std::uint32_t>(frames - result.size()));
        const auto needed = converter.inputFramesNeeded(count);
        for (std::uint32_t frame = 0; frame < needed; ++frame) {
            input.floatChannelData()[0][frame] = signal(taken + frame);
        }
        std::fill_n(output.floatChannelData()[0], count, NAN);
        converter.convert(input.block(needed), output.block(count));
        taken += needed;
        const float* samples = output.floatChannelData()[0];
        result.insert(result.end(), samples, samples + count);
    }
    return result;
}

std::function<float(std::size_t)> sine(double rate, double frequency) {
    return [=](std::size_t frame) {
        return static_cast<float>(std::cos(kTwoPi * frequency * static_cast<double>(frame) / rate));
    };
}

// The level of the best fit of a sine of this frequency, and of the residue, both in dB of full
// scale.
struct Measured {
    double level;
    double rest;
};

Measured measured(const std::vector<float>& output, double rate, double frequency) {
    const std::size_t from = 4000;
    const std::size_t count = output.size() - 2 * from;
    double real = 0.0;
    double imaginary = 0.0;
    for (std::size_t frame = from; frame < from + count; ++frame) {
        const double phase = kTwoPi * frequency * static_cast<double>(frame) / rate;
        real += output[frame] * std::cos(phase) * 2.0 / static_cast<double>(count);
        imaginary += output[frame] * std::sin(phase) * 2.0 / static_cast<double>(count);
    }
    double rest = 1e-30;
    for (std::size_t frame = from; frame < from + count; ++frame) {
        const double phase = kTwoPi * frequency * static_cast<double>(frame) / rate;
        const double error = output[frame] - real * std::cos(phase) - imaginary * std::sin(phase);
        rest += error * error * 2.0 / static_cast<double>(count);
    }
    return {20.0 * std::log10(std::hypot(real, imaginary) + 1e-30), 10.0 * std::log10(rest)};
}

class SampleRateConverterTest : public ::testing::TestWithParam<Rates> {
  protected:
    static constexpr std::size_t kFrames = 48000;

    // A sine through the conversion, in quanta of 64. The frequency is rounded so that the
    // measured frames hold whole periods.
    static Measured through(double frequency) {
        const auto [from, to] = GetParam();
        const double step = to / static_cast<double>(kFrames - 8000);
        const double exact = std::round(frequency / step) * step;
        return measured(converted(GetParam(), kFrames, sine(from, exact), [] { return 64U; }), to,
                        exact);
    }
};

TEST_P(SampleRateConverterTest, ASineStaysASine) {
    const auto result = through(1000.0);
    EXPECT_NEAR(result.level, 0.0, 0.001);
    EXPECT_LT(result.rest, -100.0);
}

TEST_P(SampleRateConverterTest, ThePassBandIsFlat) {
    const auto [from, to] = GetParam();
    for (const double share : {0.02, 0.1, 0.3, 0.6, 0.9}) {
        SCOPED_TRACE(share);
        const auto result = through(std::min(from, to) / 2 * share);
        EXPECT_NEAR(result.level, 0.0, 0.01);
        EXPECT_LT(result.rest, -100.0);
    }
}

TEST_P(SampleRateConverterTest, RemovesFrequenciesAboveTheNewBand) {
    const auto [from, to] = GetParam();
    if (to < from) {
        // Just inside the stop band, which begins where the filter's slope ends.
        for (const double frequency : {to / 2 * 1.04, (to / 2 + from / 2) / 2}) {
            SCOPED_TRACE(frequency);
            if (frequency < from / 2) {
                const auto output =
                    converted(GetParam(), kFrames, sine(from, frequency), [] { return 64U; });
                EXPECT_LT(measured(output, to, 1000.0).rest, -100.0);
            }
        }
    }
}

TEST_P(SampleRateConverterTest, SlicingDoesNotChangeABit) {
    const auto signal = [](std::size_t frame) {
        return static_cast<float>((frame * 2654435761U >> 7U) % 20001U) / 10000.0F - 1.0F;
    };
    const auto whole =
        converted(GetParam(), kFrames, signal, [] { return kMaximumFramesToRender; });
    std::mt19937 random(5);
    const auto next = [&] { return 1 + static_cast<std::uint32_t>(random()) % 700; };
    EXPECT_TRUE(converted(GetParam(), kFrames, signal, next) == whole);
    EXPECT_TRUE(converted(GetParam(), kFrames, signal, [] { return 1U; }) == whole);
}

TEST_P(SampleRateConverterTest, AnImpulseKeepsItsPlace) {
    const auto [from, to] = GetParam();
    // A moment that is a whole number of frames at both rates, and the stream's very first.
    for (const std::size_t tenths : {0U, 1U, 2U}) {
        const auto at = static_cast<std::size_t>(from) / 10 * tenths;
        const auto output = converted(
            GetParam(), kFrames, [&](std::size_t frame) { return frame == at ? 1.0F : 0.0F; },
            [] { return 64U; });
        const auto peak = std::max_element(output.begin(), output.end());
        EXPECT_EQ(peak - output.begin(),
                  static_cast<std::ptrdiff_t>(to) / 10 * static_cast<std::ptrdiff_t>(tenths));
        EXPECT_NEAR(*peak, std::min(1.0, to / from), 0.04);
    }
}

TEST_P(SampleRateConverterTest, NeedsInputEvenlyAndWithoutDrift) {
    const auto [from, to] = GetParam();
    SampleRateConverter converter({from, 1}, {to, 1});
    const AVAudioPCMBuffer input({from, 1}, 1000);
    const AVAudioPCMBuffer output({to, 1}, 64);
    const double ratio = from / to;
    std::int64_t taken = 0;
    const auto first = converter.inputFramesNeeded(64);
    EXPECT_LE(first, 64 * ratio + 70 * std::max(ratio, 1.0) + 1);
    // Three minutes.
    const auto calls = static_cast<std::int64_t>(to) * 180 / 64;
    for (std::int64_t call = 0; call < calls; ++call) {
        const auto needed = converter.inputFramesNeeded(64);
        if (call > 0) {
            ASSERT_GE(needed, std::floor(64 * ratio));
            ASSERT_LE(needed, std::ceil(64 * ratio));
        }
        converter.convert(input.block(needed), output.block(64));
        taken += needed;
    }
    const double due = static_cast<double>(calls - 1) * 64 * ratio;
    EXPECT_NEAR(static_cast<double>(taken - first), due, 1.0);
}

INSTANTIATE_TEST_SUITE_P(Rates, SampleRateConverterTest,
                         ::testing::Values(Rates{22050, 48000}, Rates{48000, 22050},
                                           Rates{44100, 48000}, Rates{48000, 44100},
                                           Rates{96000, 48000}, Rates{44100, 192000}));

TEST(SampleRateConverterFormatsTest, EqualRatesOnlyMapChannels) {
    SampleRateConverter converter({48000, 1}, {48000, 2});
    EXPECT_EQ(converter.inputFramesNeeded(100), 100U);
    const AVAudioPCMBuffer input({48000, 1}, 3);
    const AVAudioPCMBuffer output({48000, 2}, 3);
    std::copy_n(std::vector{0.25F, -1.5F, 1e-30F}.begin(), 3, input.floatChannelData()[0]);
    converter.convert(input.block(3), output.block(3));
    for (const std::size_t channel : {0U, 1U}) {
        EXPECT_EQ(output.floatChannelData()[channel][0], 0.25F);
        EXPECT_EQ(output.floatChannelData()[channel][1], -1.5F);
        EXPECT_EQ(output.floatChannelData()[channel][2], 1e-30F);
    }
}

TEST(SampleRateConverterFormatsTest, ChannelsMapWhileTheRateChanges) {
    SampleRateConverter converter({44100, 3}, {48000, 4});
    const AVAudioPCMBuffer input({44100, 3}, 5000);
    const AVAudioPCMBuffer output({48000, 4}, 4096);
    for (std::size_t channel = 0; channel < 3; ++channel) {
        std::fill_n(input.floatChannelData()[channel], 5000, 0.25F * static_cast<float>(channel));
    }
    std::fill_n(output.floatChannelData()[3], 4096, 9.0F);
    converter.convert(input.block(converter.inputFramesNeeded(4096)), output.block(4096));
    for (std::size_t channel = 0; channel < 3; ++channel) {
        EXPECT_NEAR(output.floatChannelData()[channel][2000], 0.25 * static_cast<double>(channel),
                    1e-4);
    }
    EXPECT_EQ(output.floatChannelData()[3][2000], 0.0F);
}

TEST(SampleRateConverterFormatsTest, MixesManyChannelsToOneAndRepeatsOne) {
    SampleRateConverter toOne({44100, 4}, {48000, 1});
    const AVAudioPCMBuffer four({44100, 4}, 5000);
    const AVAudioPCMBuffer one({48000, 1}, 4096);
    std::fill_n(four.floatChannelData()[2], 5000, 1.0F);
    toOne.convert(four.block(toOne.inputFramesNeeded(4096)), one.block(4096));
    EXPECT_NEAR(one.floatChannelData()[0][2000], 0.25, 1e-4);

    SampleRateConverter toMany({48000, 1}, {44100, 3});
    const AVAudioPCMBuffer three({44100, 3}, 1000);
    toMany.convert(one.block(toMany.inputFramesNeeded(1000)), three.block(1000));
    const float* const* channels = three.floatChannelData();
    EXPECT_TRUE(std::equal(channels[0], channels[0] + 1000, channels[1]));
    EXPECT_TRUE(std::equal(channels[0], channels[0] + 1000, channels[2]));
    EXPECT_NE(channels[0][900], 0.0F);
}

}  // namespace
}  // namespace orvalo::testing
