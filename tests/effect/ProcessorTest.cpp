#include "effect/dsp/Processor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using namespace orvalo::effect;

class NoMidi final : public MidiOutput {
  public:
    bool write(std::uint32_t /*frame*/, const std::array<std::uint8_t, 3>& /*message*/) override {
        ++count;
        return true;
    }
    int count = 0;
};

class ProcessorTest : public testing::Test {
  protected:
    /// Processes in place and returns the meters.
    Processor::Meters process(std::vector<float>& left, std::vector<float>& right) {
        const auto frames = static_cast<std::uint32_t>(left.size());
        processor.beginBlock(values, frames);
        processor.process(left.data(), right.data(), left.data(), right.data(), 0, frames, midi);
        return processor.endBlock();
    }

    /// The settled gain in dB for a steady level on both channels.
    double settledGain(float amplitude) {
        std::vector<float> left(96000, amplitude);
        std::vector<float> right(96000, -amplitude);
        processor.reset();
        process(left, right);
        EXPECT_EQ(left.back(), -right.back());
        return 20.0 * std::log10(static_cast<double>(left.back() / amplitude));
    }

    NoMidi midi;
    ParameterValues values;
    Processor processor{48000.0};
};

/// The effect's gain in dB, computed in double from the definitions of the controls.
double expectedGain(double amplitude, const ParameterValues& values) {
    const auto value = [&](Parameter parameter) { return static_cast<double>(values[parameter]); };
    const double excess = 20.0 * std::log10(amplitude) - value(Parameter::threshold);
    const double slope = 1.0 - 1.0 / value(Parameter::ratio);
    const double knee = value(Parameter::knee);
    double reduction = 0.0;
    if (2.0 * excess >= knee) {
        reduction = slope * excess;
    } else if (2.0 * excess > -knee) {
        reduction = slope * std::pow(excess + knee / 2.0, 2.0) / (2.0 * knee);
    }
    const double wet = std::pow(10.0, (value(Parameter::makeup) - reduction) / 20.0);
    const double mix = value(Parameter::mix) / 100.0;
    return 20.0 * std::log10(1.0 - mix + mix * wet) + value(Parameter::output);
}

TEST_F(ProcessorTest, SettlesAtTheGainOfItsControls) {
    for (const float threshold : {-40.0F, -12.0F}) {
        for (const float ratio : {1.0F, 3.0F, 20.0F}) {
            for (const float mix : {0.0F, 35.0F, 100.0F}) {
                for (const float makeup : {0.0F, 7.5F}) {
                    values.set(Parameter::threshold, threshold);
                    values.set(Parameter::ratio, ratio);
                    values.set(Parameter::knee, 10.0F);
                    values.set(Parameter::mix, mix);
                    values.set(Parameter::makeup, makeup);
                    values.set(Parameter::output, -3.5F);
                    for (const float amplitude : {0.003F, 0.2F, 0.25F, 1.0F}) {
                        EXPECT_NEAR(settledGain(amplitude),
                                    expectedGain(static_cast<double>(amplitude), values), 1e-3);
                    }
                }
            }
        }
    }
}

TEST_F(ProcessorTest, BothChannelsGetTheGainOfTheLouderOne) {
    std::vector<float> left(48000, 0.9F);
    std::vector<float> right(48000, 0.01F);
    std::vector<float> both(48000, 0.9F);
    std::vector<float> same(48000, 0.9F);
    process(left, right);
    processor.reset();
    process(both, same);
    EXPECT_EQ(left, both);
    EXPECT_EQ(both, same);
    for (std::size_t i = 0; i < left.size(); ++i) {
        ASSERT_NEAR(right[i] / 0.01F, left[i] / 0.9F, 1e-5F) << i;
    }
}

TEST_F(ProcessorTest, SwappedInputsGiveSwappedOutputs) {
    std::vector<float> left(4800);
    std::vector<float> right(4800);
    for (std::size_t i = 0; i < left.size(); ++i) {
        left[i] = std::sin(static_cast<float>(i) * 0.05F);
        right[i] = 0.5F * std::cos(static_cast<float>(i) * 0.031F);
    }
    auto swappedLeft = right;
    auto swappedRight = left;
    process(left, right);
    processor.reset();
    process(swappedLeft, swappedRight);
    EXPECT_EQ(swappedLeft, right);
    EXPECT_EQ(swappedRight, left);
}

TEST_F(ProcessorTest, OutputMayBeTheOtherChannelsInput) {
    std::vector<float> a(1000, 0.8F);
    std::vector<float> b(1000, -0.3F);
    auto left = a;
    auto right = b;
    process(left, right);
    processor.reset();
    processor.beginBlock(values, 1000);
    processor.process(a.data(), b.data(), b.data(), a.data(), 0, 1000, midi);
    EXPECT_EQ(b, left);
    EXPECT_EQ(a, right);
}

TEST_F(ProcessorTest, SilenceStaysSilence) {
    std::vector<float> left(48000, 0.0F);
    std::vector<float> right(48000, 0.0F);
    const auto meters = process(left, right);
    EXPECT_EQ(left, std::vector<float>(48000, 0.0F));
    EXPECT_EQ(right, std::vector<float>(48000, 0.0F));
    EXPECT_EQ(midi.count, 0);
    EXPECT_EQ(meters.gainReduction, 0.0F);
    EXPECT_EQ(meters.inputLevel, -90.0F);
    EXPECT_EQ(meters.outputLevel, -90.0F);
}

TEST_F(ProcessorTest, InvalidSamplesCountAsSilence) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    constexpr float infinity = std::numeric_limits<float>::infinity();
    std::vector<float> left(2000, 0.5F);
    std::vector<float> right(2000, 0.5F);
    auto cleanLeft = left;
    auto cleanRight = right;
    for (const auto& [frame, value] : std::initializer_list<std::pair<std::size_t, float>>{
             {10, nan}, {63, infinity}, {64, -infinity}, {1000, 3e38F}}) {
        left[frame] = right[frame] = value;
        cleanLeft[frame] = cleanRight[frame] = 0.0F;
    }
    process(left, right);
    processor.reset();
    process(cleanLeft, cleanRight);
    EXPECT_EQ(left, cleanLeft);
    EXPECT_EQ(right, cleanRight);
    EXPECT_EQ(left[10], 0.0F);
    EXPECT_TRUE(std::isfinite(left.back()));
}

TEST_F(ProcessorTest, MetersShowTheBlock) {
    values.set(Parameter::threshold, -20.0F);
    values.set(Parameter::ratio, 2.0F);
    values.set(Parameter::knee, 0.0F);
    values.set(Parameter::makeup, 0.0F);
    std::vector<float> left(96000, 0.1F);
    std::vector<float> right(96000, 1.0F);
    process(left, right);
    std::vector<float> nextLeft(256, 0.1F);
    std::vector<float> nextRight(256, 1.0F);
    const auto meters = process(nextLeft, nextRight);
    EXPECT_NEAR(meters.gainReduction, 10.0F, 1e-2F);
    EXPECT_NEAR(meters.inputLevel, 0.0F, 1e-3F);
    EXPECT_EQ(meters.ducking, 0.0F);
    // An empty block, by which a host only passes events and values, changes no meter.
    std::vector<float> none;
    const auto same = process(none, none);
    EXPECT_EQ(same.gainReduction, meters.gainReduction);
    EXPECT_EQ(same.inputLevel, meters.inputLevel);
    EXPECT_EQ(same.outputLevel, meters.outputLevel);
    EXPECT_EQ(same.truePeak, meters.truePeak);
    EXPECT_NEAR(nextRight.back(), std::pow(10.0F, -0.5F), 1e-4F);
}

TEST_F(ProcessorTest, ParameterChangeMakesNoStep) {
    values.set(Parameter::ratio, 1.0F);
    std::vector<float> left(4800, 0.5F);
    std::vector<float> right(4800, 0.5F);
    process(left, right);
    float last = left.back();
    for (const Parameter parameter :
         {Parameter::makeup, Parameter::output, Parameter::mix, Parameter::enabled}) {
        const auto& range = parameterRanges.at(static_cast<std::size_t>(parameter));
        for (const float value : {range.maximum, range.minimum, range.standard}) {
            values.set(parameter, value);
            std::vector<float> nextLeft(2400, 0.5F);
            std::vector<float> nextRight(2400, 0.5F);
            process(nextLeft, nextRight);
            for (const float now : nextLeft) {
                // 36 dB in 960 frames are 0.0375 dB or 0.43 % a frame; all steps are below 1 %.
                ASSERT_LT(std::abs(now - last), 0.01F * last + 1e-6F) << range.symbol;
                last = now;
            }
        }
    }
}

TEST_F(ProcessorTest, ParametersApplyAtOnceAfterReset) {
    values.set(Parameter::ratio, 1.0F);
    values.set(Parameter::makeup, 0.0F);
    values.set(Parameter::output, -6.0F);
    std::vector<float> left{1.0F};
    std::vector<float> right{1.0F};
    process(left, right);
    EXPECT_NEAR(left[0], 0.501187F, 1e-6F);
}

TEST_F(ProcessorTest, BypassIsExactAfterTheCrossFade) {
    values.set(Parameter::enabled, 0.0F);
    std::vector<float> left(2000, 0.7F);
    std::vector<float> right(2000, 0.123F);
    process(left, right);
    EXPECT_EQ(left, std::vector<float>(2000, 0.7F));
    EXPECT_EQ(right, std::vector<float>(2000, 0.123F));
    EXPECT_EQ(midi.count, 0);
}

TEST(ParameterValues, ClampsToTheRanges) {
    ParameterValues values;
    values.set(Parameter::ratio, 100.0F);
    EXPECT_EQ(values[Parameter::ratio], 20.0F);
    values.set(Parameter::ratio, -3.0F);
    EXPECT_EQ(values[Parameter::ratio], 1.0F);
    values.set(Parameter::ratio, std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(values[Parameter::ratio], 4.0F);
    values.set(Parameter::triggerNote, 59.6F);
    EXPECT_EQ(values.whole(Parameter::triggerNote), 60);
}

TEST_F(ProcessorTest, RangeLimitsTheReduction) {
    values.set(Parameter::threshold, -40.0F);
    values.set(Parameter::ratio, 20.0F);
    values.set(Parameter::makeup, 0.0F);
    values.set(Parameter::knee, 0.0F);
    values.set(Parameter::range, 9.0F);
    EXPECT_NEAR(settledGain(1.0F), -9.0, 1e-3);
    EXPECT_NEAR(settledGain(0.011F), -0.95 * (20.0 * std::log10(0.011) + 40.0), 1e-3);
    values.set(Parameter::range, 60.0F);
    EXPECT_NEAR(settledGain(1.0F), -38.0, 1e-3);
    EXPECT_NEAR(settledGain(1000.0F), -95.0, 1e-3);
}

TEST_F(ProcessorTest, AutoMakeupIsHalfTheReductionAtFullScale) {
    values.set(Parameter::threshold, -30.0F);
    values.set(Parameter::ratio, 3.0F);
    values.set(Parameter::knee, 12.0F);
    values.set(Parameter::makeup, 24.0F);
    values.set(Parameter::autoMakeup, 1.0F);
    EXPECT_NEAR(settledGain(1.0F), -10.0, 1e-3);
    EXPECT_NEAR(settledGain(0.001F), 10.0, 1e-3);
    values.set(Parameter::range, 8.0F);
    EXPECT_NEAR(settledGain(0.001F), 4.0, 1e-3);
}

}  // namespace
