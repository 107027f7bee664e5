#include "effect/dsp/TruePeak.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "effect/dsp/Processor.h"

namespace {

using namespace orvalo::effect;

struct NoMidi final : MidiOutput {
    bool write(std::uint32_t /*frame*/, const std::array<std::uint8_t, 3>& /*message*/) override {
        return true;
    }
};

/// A sine whose period is four samples, with the samples beside its peaks.
std::vector<float> betweenPeaks(std::size_t frames) {
    std::vector<float> samples;
    for (std::size_t i = 0; i < frames; ++i) {
        samples.push_back(
            static_cast<float>(std::sin(0.5 * std::numbers::pi * (static_cast<double>(i) + 0.5))));
    }
    return samples;
}

TEST(TruePeak, FindsThePeakBetweenTheSamples) {
    const auto samples = betweenPeaks(64);
    EXPECT_NEAR(samples[0], 0.7071F, 1e-4F);
    TruePeak meter;
    meter.highest(samples.data(), 64, 1.0F, 0.0F);
    // The recommendation allows a fourfold interpolation 0.688 dB too little.
    const float peak = meter.highest(samples.data(), 64, 1.0F, 0.0F);
    EXPECT_NEAR(20.0F * std::log10(peak), 0.0F, 0.69F);
    EXPECT_GT(peak, 0.92F);
}

TEST(TruePeak, DoesNotDependOnTheBlocks) {
    std::vector<float> samples;
    samples.reserve(64);
    for (int i = 0; i < 64; ++i) {
        samples.push_back(std::sin(0.37F * static_cast<float>(i * i)));
    }
    TruePeak whole;
    TruePeak sliced;
    const float expected = whole.highest(samples.data(), 64, 1.0F, 0.0F);
    float found = 0.0F;
    for (std::uint32_t done = 0; done < 64;) {
        const std::uint32_t count = std::min(done % 7 + 1, 64 - done);
        found = sliced.highest(samples.data() + done, count, 1.0F, found);
        done += count;
    }
    EXPECT_EQ(found, expected);
}

TEST(TruePeak, ReturnsTheStartWhenNothingExceedsIt) {
    const std::vector<float> samples(64, 0.25F);
    TruePeak meter;
    EXPECT_EQ(meter.highest(samples.data(), 64, 0.25F, 0.9F), 0.9F);
}

TEST(TruePeak, IsHeldForAQuarterOfASecondByTheProcessor) {
    NoMidi midi;
    Processor processor(48000.0);
    ParameterValues values;
    values.set(Parameter::enabled, 0.0F);
    const auto loud = betweenPeaks(480);
    const std::vector<float> silent(480, 0.0F);
    std::vector<float> left(480);
    std::vector<float> right(480);
    const auto run = [&](const std::vector<float>& input) {
        processor.beginBlock(values, 480);
        processor.process(silent.data(), input.data(), left.data(), right.data(), 0, 480, midi);
        return processor.endBlock();
    };
    const auto meters = run(loud);
    EXPECT_NEAR(meters.outputLevel, -3.01F, 0.01F);
    EXPECT_NEAR(meters.truePeak, 0.0F, 0.69F);
    for (int i = 0; i < 24; ++i) {
        EXPECT_NEAR(run(silent).truePeak, meters.truePeak, 1e-4F) << i;
    }
    for (int i = 0; i < 101; ++i) {
        run(silent);
    }
    EXPECT_NEAR(run(silent).truePeak, meters.truePeak - 24.0F, 0.5F);
    // A level that stays is shown steadily.
    float least = 10.0F;
    for (int i = 0; i < 200; ++i) {
        least = std::min(least, run(loud).truePeak);
    }
    EXPECT_NEAR(least, meters.truePeak, 0.3F);
}

TEST(TruePeak, MeterOfTheProcessorMissesNoPeakThatItSkips) {
    // Noise whose level rises and falls, in blocks that last from 21 microseconds to one second.
    constexpr double rate = 8000.0;
    NoMidi midi;
    Processor processor(rate);
    ParameterValues values;
    values.set(Parameter::enabled, 0.0F);
    LevelMeter expected(rate, 0.25);
    std::array<TruePeak, 2> peaks;
    std::mt19937 random(1);
    const auto sample = [&] { return static_cast<float>(random()) / 2147483648.0F - 1.0F; };
    for (int block = 0; block < 400; ++block) {
        const auto frames =
            static_cast<std::uint32_t>(block % 50 == 49 ? 8192 : 1 + random() % 200);
        const float level = std::pow(10.0F, -0.1F * static_cast<float>(random() % 20));
        std::array<std::vector<float>, 2> input{std::vector<float>(frames),
                                                std::vector<float>(frames)};
        float highest = 0.0F;
        for (std::size_t channel = 0; channel < 2; ++channel) {
            auto& samples = input.at(channel);
            std::generate(samples.begin(), samples.end(), [&] { return level * sample(); });
            for (std::uint32_t i = 0; i < frames; i += chunkFrames) {
                Chunk found{};
                peaks.at(channel).raise(samples.data() + i, found.data(),
                                        std::min(chunkFrames, frames - i));
                highest = std::max(highest, *std::max_element(found.begin(), found.end()));
            }
        }
        expected.update(highest, frames);
        processor.beginBlock(values, frames);
        processor.process(input[0].data(), input[1].data(), input[0].data(), input[1].data(), 0,
                          frames, midi);
        ASSERT_EQ(processor.endBlock().truePeak, expected.level()) << block;
    }
}

TEST(ProcessorMeters, ShowNoReductionWhileBypassed) {
    NoMidi midi;
    Processor processor(48000.0);
    ParameterValues values;
    const std::vector<float> loud(4800, 1.0F);
    std::vector<float> left(4800);
    std::vector<float> right(4800);
    const std::array<std::uint8_t, 3> note{0x90, 60, 127};
    processor.beginBlock(values, 4800);
    processor.receive(note.data(), 3);
    const auto run = [&] {
        processor.process(loud.data(), loud.data(), left.data(), right.data(), 0, 4800, midi);
        return processor.endBlock();
    };
    const auto working = run();
    EXPECT_GT(working.gainReduction, 10.0F);
    EXPECT_GT(working.ducking, 11.0F);
    values.set(Parameter::enabled, 0.0F);
    processor.beginBlock(values, 4800);
    const auto bypassed = run();
    EXPECT_EQ(bypassed.gainReduction, 0.0F);
    EXPECT_EQ(bypassed.ducking, 0.0F);
    EXPECT_EQ(bypassed.inputLevel, working.inputLevel);
}

}  // namespace
