#include "effect/ui/model/TransferCurve.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "effect/dsp/Processor.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

class NoMidi final : public MidiOutput {
  public:
    bool write(std::uint32_t /*frame*/, const std::array<std::uint8_t, 3>& /*message*/) override {
        return true;
    }
};

/// The effect's output level for a steady input level.
float measured(const ParameterValues& values, float input) {
    constexpr std::uint32_t frames = 48000;
    Processor processor(48000.0);
    std::vector<float> signal(frames, std::pow(10.0F, 0.05F * input));
    std::vector<float> left(frames);
    std::vector<float> right(frames);
    NoMidi midi;
    processor.beginBlock(values, frames);
    processor.process(signal.data(), signal.data(), left.data(), right.data(), 0, frames, midi);
    processor.endBlock();
    return 20.0F * std::log10(left.back());
}

TEST(TransferCurve, MatchesTheEffect) {
    ParameterValues values;
    values.set(Parameter::threshold, -30.0F);
    values.set(Parameter::ratio, 3.0F);
    values.set(Parameter::knee, 10.0F);
    values.set(Parameter::makeup, 7.0F);
    values.set(Parameter::output, -2.0F);
    for (const float mix : {0.0F, 40.0F, 100.0F}) {
        values.set(Parameter::mix, mix);
        for (const float input : {-60.0F, -40.0F, -33.0F, -30.0F, -26.0F, -12.0F, 0.0F, 6.0F}) {
            EXPECT_NEAR(steadyOutput(values, input), measured(values, input), 0.01F)
                << input << " at " << mix;
        }
    }
}

TEST(TransferCurve, KnowsTheRangeAndTheAutomaticMakeup) {
    ParameterValues values;
    values.set(Parameter::threshold, -40.0F);
    values.set(Parameter::knee, 0.0F);
    values.set(Parameter::autoMakeup, 1.0F);
    for (const float range : {6.0F, 20.0F, 60.0F}) {
        values.set(Parameter::range, range);
        for (const float input : {-50.0F, -30.0F, -12.0F, 0.0F, 6.0F}) {
            EXPECT_NEAR(steadyOutput(values, input), measured(values, input), 0.01F)
                << input << " at " << range;
        }
    }
    // The largest range is no limit.
    values.set(Parameter::threshold, -60.0F);
    values.set(Parameter::ratio, 20.0F);
    values.set(Parameter::autoMakeup, 0.0F);
    EXPECT_NEAR(steadyOutput(values, 12.0F), measured(values, 12.0F), 0.01F);
    EXPECT_NEAR(steadyOutput(values, 12.0F), 4.0F - 60.0F + 72.0F / 20.0F, 0.01F);
}

TEST(TransferCurve, IsStraightWhileTheEffectIsBypassed) {
    ParameterValues values;
    values.set(Parameter::enabled, 0.0F);
    EXPECT_EQ(steadyOutput(values, -3.0F), -3.0F);
    EXPECT_EQ(gainInForce(values, 12.0F, 6.0F), 0.0F);
}

TEST(TransferCurve, DuckingLowersTheDrySignal) {
    ParameterValues values;
    values.set(Parameter::makeup, 0.0F);
    values.set(Parameter::mix, 0.0F);
    EXPECT_NEAR(gainInForce(values, 20.0F, 6.0F), -6.0F, 1e-5F);
}

}  // namespace
