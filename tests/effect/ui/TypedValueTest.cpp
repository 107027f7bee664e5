#include <gtest/gtest.h>

#include <random>

#include "effect/ui/model/Control.h"
#include "effect/ui/model/ValueMapping.h"
#include "effect/ui/model/ValueText.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

std::optional<float> value(Parameter parameter, const char* text) {
    const auto typed = typedValue(parameter, text);
    EXPECT_EQ(typed.value.has_value(), typed.complaint.empty()) << text;
    return typed.value;
}

std::string complaint(Parameter parameter, const char* text) {
    EXPECT_FALSE(typedValue(parameter, text).value) << text;
    return typedValue(parameter, text).complaint;
}

TEST(TypedValue, AcceptsTypedText) {
    EXPECT_EQ(value(Parameter::threshold, "-20"), -20.0F);
    EXPECT_EQ(value(Parameter::threshold, " -20.5 dB "), -20.5F);
    EXPECT_EQ(value(Parameter::threshold, "-20,5db"), -20.5F);
    EXPECT_EQ(value(Parameter::threshold, "\u221220"), -20.0F);
    EXPECT_EQ(value(Parameter::output, "+3"), 3.0F);
    EXPECT_EQ(value(Parameter::output, ".5"), 0.5F);
    EXPECT_EQ(value(Parameter::ratio, "4"), 4.0F);
    EXPECT_EQ(value(Parameter::ratio, "4 : 1"), 4.0F);
    EXPECT_EQ(value(Parameter::attack, "25ms"), 25.0F);
    EXPECT_EQ(value(Parameter::release, "0.2 s"), 200.0F);
    EXPECT_EQ(value(Parameter::mix, "50 %"), 50.0F);
    EXPECT_EQ(value(Parameter::triggerNote, "40"), 40.0F);
    EXPECT_EQ(value(Parameter::triggerNote, "c4"), 60.0F);
    EXPECT_EQ(value(Parameter::triggerNote, "F#3"), 54.0F);
    EXPECT_EQ(value(Parameter::triggerNote, "Bb2"), 46.0F);
    EXPECT_EQ(value(Parameter::triggerNote, "B2"), 47.0F);
    EXPECT_EQ(value(Parameter::triggerNote, "C-1"), 0.0F);
    EXPECT_EQ(value(Parameter::midiChannel, "ALL"), 0.0F);
    EXPECT_EQ(value(Parameter::midiChannel, "16"), 16.0F);
    EXPECT_EQ(value(Parameter::sideChainHighPass, "90"), 90.0F);
    EXPECT_EQ(value(Parameter::sideChainHighPass, "1,5 kHz"), 1500.0F);
    EXPECT_EQ(value(Parameter::sideChainHighPass, "2k"), 2000.0F);
    EXPECT_EQ(value(Parameter::sideChainHighPass, "off"), 20.0F);
    EXPECT_EQ(value(Parameter::sideChainLowPass, "Off"), 20000.0F);
    EXPECT_EQ(value(Parameter::range, "no limit"), 60.0F);
    EXPECT_EQ(value(Parameter::range, "none"), 60.0F);
    EXPECT_EQ(value(Parameter::beatTempo, "128 bpm"), 128.0F);
    EXPECT_EQ(value(Parameter::beatDivision, "1/8"), 10.0F);
    EXPECT_EQ(value(Parameter::beatDivision, "1/4 T"), 8.0F);
    EXPECT_EQ(value(Parameter::beatDivision, "1/16 dotted"), 12.0F);
}

TEST(TypedValue, AcceptsTheDisplayedText) {
    for (std::size_t i = 1; i < parameterCount; ++i) {
        const auto parameter = static_cast<Parameter>(i);
        for (int percent = 0; percent <= 100; ++percent) {
            const double position = 0.01 * percent;
            const std::string shown =
                valueText(parameter, rounded(parameter, valueAt(parameter, position)));
            const auto typed = typedValue(parameter, shown);
            ASSERT_TRUE(typed.value) << shown;
            EXPECT_EQ(valueText(parameter, *typed.value), shown);
        }
    }
}

TEST(TypedValue, ComplainsAboutInvalidText) {
    EXPECT_EQ(complaint(Parameter::threshold, "abc"), "\"abc\" is not a value in dB");
    EXPECT_EQ(complaint(Parameter::threshold, ""), "\"\" is not a value in dB");
    EXPECT_EQ(complaint(Parameter::threshold, "-20 ms"), "\"-20 ms\" is not a value in dB");
    EXPECT_EQ(complaint(Parameter::ratio, "4:2"), "\"4:2\" is not a ratio");
    EXPECT_EQ(complaint(Parameter::attack, "12x"), "\"12x\" is not a time in ms or s");
    EXPECT_EQ(complaint(Parameter::mix, "half"), "\"half\" is not a percentage");
    EXPECT_EQ(complaint(Parameter::triggerNote, "H2"), "\"H2\" is not a note");
    EXPECT_EQ(complaint(Parameter::triggerNote, "36.5"), "\"36.5\" is not a note");
    EXPECT_EQ(complaint(Parameter::midiChannel, "1.5"), "\"1.5\" is not a channel");
    EXPECT_EQ(complaint(Parameter::sideChainLowPass, "low"),
              "\"low\" is not a frequency in Hz or kHz");
    EXPECT_EQ(complaint(Parameter::beatTempo, "fast"), "\"fast\" is not a tempo in BPM");
    EXPECT_EQ(complaint(Parameter::beatDivision, "1/3"), "\"1/3\" is not one of the choices");
    for (const char* text : {"+-3", "nan", "inf", "1e400", "0x10", "--3", "3 3 dB dB", "."}) {
        EXPECT_EQ(complaint(Parameter::output, text),
                  "\"" + std::string(text) + "\" is not a value in dB");
    }
}

TEST(TypedValue, ComplaintNamesTheRange) {
    EXPECT_EQ(complaint(Parameter::threshold, "-61"), "From -60.0 dB to 0.0 dB");
    EXPECT_EQ(complaint(Parameter::threshold, "0.1"), "From -60.0 dB to 0.0 dB");
    EXPECT_EQ(complaint(Parameter::release, "3 s"), "From 5.0 ms to 2.00 s");
    EXPECT_EQ(complaint(Parameter::triggerNote, "C10"), "From C-1 (0) to G9 (127)");
    EXPECT_EQ(complaint(Parameter::midiChannel, "17"), "From All to 16");
}

TEST(TypedValue, EveryTextGivesAValueOrAComplaint) {
    std::mt19937 random(7);
    const std::string characters = "0123456789.,-+ :%dbmsCc#()eExall\xE2\x88\x92\xFF\n";
    for (int turn = 0; turn < 20000; ++turn) {
        std::string text;
        const auto length = random() % 10;
        for (unsigned i = 0; i < length; ++i) {
            text += characters[random() % characters.size()];
        }
        const auto parameter = static_cast<Parameter>(random() % parameterCount);
        const auto typed = typedValue(parameter, text);
        ASSERT_EQ(typed.value.has_value(), typed.complaint.empty()) << text;
        if (typed.value) {
            ASSERT_EQ(range(parameter).clamp(*typed.value), *typed.value) << text;
        }
    }
}

}  // namespace
