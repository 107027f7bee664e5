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
    EXPECT_FALSE(choice.update(ParameterValues()));
    EXPECT_TRUE(choice.update(with(-21.0F, 8.0F)));
    EXPECT_EQ(choice.label(), "Custom settings");
    EXPECT_TRUE(choice.update(with(-20.0F, 8.0F)));
    EXPECT_EQ(choice.label(), "Firm");
    EXPECT_TRUE(choice.update(with(-20.0F, 7.9F)));
    EXPECT_EQ(choice.label(), "Firm *");
    EXPECT_TRUE(choice.update(with(-20.0F, 2.0F)));
    EXPECT_EQ(choice.label(), "Soft");
    EXPECT_EQ(choice.chosen(), 1U);
    EXPECT_TRUE(choice.update(ParameterValues()));
    EXPECT_EQ(choice.label(), "Default");
}

TEST(PresetChoice, NamesTheChosenOneOfEqualPresets) {
    auto choice = threePresets();
    choice.choose(2);
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
    EXPECT_EQ(choice.neighbour(-1), 2U);
    choice.choose(2);
    EXPECT_EQ(choice.neighbour(1), 0U);
    EXPECT_EQ(choice.neighbour(-1), 1U);
    choice.choose(0);
    EXPECT_EQ(choice.neighbour(-1), 2U);
    EXPECT_EQ(PresetChoice().neighbour(1), std::nullopt);
}

}  // namespace
