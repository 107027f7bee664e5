#include "effect/ui/model/PresetChoice.h"

#include <gtest/gtest.h>

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

PresetChoice threePresets() {
    return PresetChoice({{"Firm", {{Parameter::threshold, -20.0F}, {Parameter::ratio, 8.0F}}},
                         {"Soft", {{Parameter::threshold, -20.0F}, {Parameter::ratio, 2.0F}}},
                         {"Twin", {{Parameter::threshold, -20.0F}, {Parameter::ratio, 2.0F}}}});
}

ParameterValues with(float threshold, float ratio) {
    ParameterValues values;
    values.set(Parameter::threshold, threshold);
    values.set(Parameter::ratio, ratio);
    return values;
}

TEST(PresetChoice, NamesTheActivePreset) {
    auto choice = threePresets();
    EXPECT_EQ(choice.label(), "Default");
    EXPECT_TRUE(choice.update(with(-21.0F, 8.0F)));
    EXPECT_EQ(choice.label(), "Custom settings");
    EXPECT_TRUE(choice.update(ParameterValues()));
    EXPECT_EQ(choice.label(), "Default");
    EXPECT_TRUE(choice.update(with(-21.0F, 8.0F)));
    EXPECT_EQ(choice.label(), "Default *");
    EXPECT_TRUE(choice.update(with(-20.0F, 8.0F)));
    EXPECT_EQ(choice.label(), "Firm");
    EXPECT_TRUE(choice.update(with(-20.0F, 7.9F)));
    EXPECT_EQ(choice.label(), "Firm *");
    EXPECT_TRUE(choice.update(with(-20.0F, 2.0F)));
    EXPECT_EQ(choice.label(), "Soft");
    EXPECT_EQ(choice.chosen(), 2U);
    EXPECT_TRUE(choice.update(ParameterValues()));
    EXPECT_EQ(choice.label(), "Default");
}

TEST(PresetChoice, NamesTheChosenOneOfEqualPresets) {
    auto choice = threePresets();
    choice.choose(3);
    choice.update(with(-20.0F, 2.0F));
    EXPECT_EQ(choice.label(), "Twin");
}

TEST(PresetChoice, ToleratesValuesConvertedThroughText) {
    auto choice = threePresets();
    choice.update(with(-20.0001F, 8.0001F));
    EXPECT_EQ(choice.label(), "Firm");
}

TEST(PresetChoice, NeighboursWrapAtTheEnds) {
    auto choice = threePresets();
    EXPECT_EQ(choice.neighbour(1), 0U);
    EXPECT_EQ(choice.neighbour(-1), 3U);
    choice.choose(3);
    EXPECT_EQ(choice.neighbour(1), 0U);
    EXPECT_EQ(choice.neighbour(-1), 2U);
    choice.choose(0);
    EXPECT_EQ(choice.neighbour(-1), 3U);
}

TEST(PresetChoice, DefaultIsFirstAndSetsEveryControlButEnabled) {
    const auto choice = threePresets();
    const auto& presets = choice.presets();
    ASSERT_EQ(presets.size(), 4U);
    EXPECT_EQ(presets.front().name, "Default");
    EXPECT_NE(presets.front().description, "");
    EXPECT_EQ(presets.front().values.size(), parameterCount - 1);
    for (const auto& [parameter, value] : presets.front().values) {
        EXPECT_NE(parameter, Parameter::enabled);
        EXPECT_EQ(value, parameterRanges.at(static_cast<std::size_t>(parameter)).standard);
    }
    EXPECT_EQ(PresetChoice().presets().size(), 1U);
}

TEST(PresetChoice, ChosenPresetStaysChosenAmongOthers) {
    auto choice = threePresets();
    choice.choose(2);
    choice.replace({{"Earlier", {{Parameter::knee, 1.0F}}},
                    {"Soft", {{Parameter::ratio, 3.0F}}},
                    {.name = "Soft", .values = {{Parameter::ratio, 2.0F}}, .isUser = true}});
    EXPECT_EQ(choice.chosen(), 2U);
    EXPECT_EQ(choice.find({"Soft", true}), 3U);
    EXPECT_EQ(choice.find({"Firm", false}), std::nullopt);
    choice.replace({});
    EXPECT_EQ(choice.chosen(), std::nullopt);
}

}  // namespace
