#include "effect/ui/model/ValueText.h"

#include <gtest/gtest.h>

#include "effect/ui/model/Control.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

TEST(ValueText, ShowsEveryUnit) {
    EXPECT_EQ(valueText(Parameter::enabled, 1.0F), "On");
    EXPECT_EQ(valueText(Parameter::enabled, 0.0F), "Off");
    EXPECT_EQ(valueText(Parameter::threshold, -18.0F), "-18.0 dB");
    EXPECT_EQ(valueText(Parameter::threshold, -0.04F), "-0.04 dB");
    EXPECT_EQ(valueText(Parameter::output, -0.001F), "0.0 dB");
    EXPECT_EQ(valueText(Parameter::ratio, 4.0F), "4.0:1");
    EXPECT_EQ(valueText(Parameter::ratio, 4.25F), "4.25:1");
    EXPECT_EQ(valueText(Parameter::attack, 0.1F), "0.1 ms");
    EXPECT_EQ(valueText(Parameter::attack, 10.0F), "10.0 ms");
    EXPECT_EQ(valueText(Parameter::release, 120.0F), "120 ms");
    EXPECT_EQ(valueText(Parameter::release, 1250.0F), "1.25 s");
    EXPECT_EQ(valueText(Parameter::mix, 50.0F), "50 %");
    EXPECT_EQ(valueText(Parameter::triggerNote, 36.0F), "C2 (36)");
    EXPECT_EQ(valueText(Parameter::triggerNote, 0.0F), "C-1 (0)");
    EXPECT_EQ(valueText(Parameter::triggerNote, 127.0F), "G9 (127)");
    EXPECT_EQ(valueText(Parameter::midiChannel, 0.0F), "All");
    EXPECT_EQ(valueText(Parameter::midiChannel, 16.0F), "16");
    EXPECT_EQ(valueText(Parameter::sideChainHighPass, 120.0F), "120 Hz");
    EXPECT_EQ(valueText(Parameter::sideChainHighPass, 1500.0F), "1.5 kHz");
    EXPECT_EQ(valueText(Parameter::beatTempo, 120.0F), "120 BPM");
    EXPECT_EQ(valueText(Parameter::beatTempo, 97.5F), "97.5 BPM");
    EXPECT_EQ(valueText(Parameter::beatDivision, 8.0F), "1/4 triplet");
    EXPECT_EQ(valueText(Parameter::sideChainSource, 1.0F), "External");
    EXPECT_EQ(valueText(Parameter::oversampling, 2.0F), "Fourfold");
    EXPECT_EQ(valueText(Parameter::beat, 1.0F), "On");
}

TEST(ValueText, NamesTheValuesThatSwitchSomethingOff) {
    EXPECT_EQ(valueText(Parameter::sideChainHighPass, 20.0F), "Off");
    EXPECT_EQ(valueText(Parameter::sideChainHighPass, 20000.0F), "20.0 kHz");
    EXPECT_EQ(valueText(Parameter::sideChainLowPass, 20000.0F), "Off");
    EXPECT_EQ(valueText(Parameter::sideChainLowPass, 20.0F), "20 Hz");
    EXPECT_EQ(valueText(Parameter::range, 60.0F), "No limit");
    EXPECT_EQ(shortValueText(Parameter::range, 60.0F), "None");
    EXPECT_EQ(valueText(Parameter::range, 59.9F), "59.9 dB");
}

TEST(ValueText, IsShorterWithoutItsUnit) {
    EXPECT_EQ(shortValueText(Parameter::threshold, -18.0F), "-18.0");
    EXPECT_EQ(shortValueText(Parameter::ratio, 4.0F), "4.0");
    EXPECT_EQ(shortValueText(Parameter::release, 1250.0F), "1.25 s");
    EXPECT_EQ(shortValueText(Parameter::triggerNote, 37.0F), "C#2");
    EXPECT_EQ(shortValueText(Parameter::sideChainLowPass, 12500.0F), "12.5k");
    EXPECT_EQ(shortValueText(Parameter::beatTempo, 120.0F), "120");
    EXPECT_EQ(shortValueText(Parameter::beatDivision, 9.0F), "1/8 D");
}

TEST(ValueText, OmitsUnneededDecimals) {
    EXPECT_EQ(decimalText(1.0, 0, 2), "1");
    EXPECT_EQ(decimalText(1.5, 0, 2), "1.5");
    EXPECT_EQ(decimalText(1.456, 0, 2), "1.46");
    EXPECT_EQ(decimalText(1.0, 2, 2), "1.00");
    EXPECT_EQ(decimalText(-0.0, 1, 1), "0.0");
    EXPECT_EQ(decimalText(100.0, 0, 0), "100");
}

}  // namespace
