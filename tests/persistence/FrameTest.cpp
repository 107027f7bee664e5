#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/persistence/PersistenceFixture.h"

namespace orvalo::testing {
namespace {

using Dictionary = PropertyList::Dictionary;

class FrameTest : public PersistenceFixture {
  protected:
    std::optional<CGRect> frame(const std::optional<PropertyList>& value) {
        data.setObject("frame", value);
        return PersistentAppData::dictionaryToFrame("frame");
    }
};

TEST_F(FrameTest, ARectangleIsFourFloats) {
    EXPECT_EQ(PersistentAppData::frameToDictionary({1.5, -2, 300, 0.1}),
              (Dictionary{{"left", 1.5F}, {"top", -2.0F}, {"width", 300.0F}, {"height", 0.1F}}));
}

TEST_F(FrameTest, NegativeExtentsAreStandardised) {
    EXPECT_EQ(PersistentAppData::frameToDictionary({0, 0, -50, 20}),
              (Dictionary{{"left", -50.0F}, {"top", 0.0F}, {"width", 50.0F}, {"height", 20.0F}}));
    EXPECT_EQ(PersistentAppData::frameToDictionary({5, 10, 1, -4}),
              (Dictionary{{"left", 5.0F}, {"top", 6.0F}, {"width", 1.0F}, {"height", 4.0F}}));
}

TEST_F(FrameTest, ADictionaryIsNotStored) {
    PersistentAppData::frameToDictionary({1, 2, 3, 4});
    EXPECT_TRUE(standard->dictionaryRepresentation().empty());
}

TEST_F(FrameTest, AStoredRectangleIsReadUnchanged) {
    data.setObject("frame", PersistentAppData::frameToDictionary({1.5, -2, 300, 0.1}));
    EXPECT_EQ(PersistentAppData::dictionaryToFrame("frame"),
              CGRect(1.5, -2, 300, static_cast<double>(0.1F)));
}

TEST_F(FrameTest, AMissingEntryLeavesItsDefaultValue) {
    EXPECT_EQ(frame(Dictionary{{"left", 10}, {"top", 20}}), CGRect(10, 20, 100, 100));
    EXPECT_EQ(frame(Dictionary{{"width", 7.5}}), CGRect(0, 0, 7.5, 100));
    EXPECT_EQ(frame(Dictionary{{"height", 8}}), CGRect(0, 0, 100, 8));
    EXPECT_EQ(frame(Dictionary{}), CGRect(0, 0, 100, 100));
}

TEST_F(FrameTest, OtherKeysAreIgnored) {
    EXPECT_EQ(frame(Dictionary{{"Left", 1}, {"right", 2}, {"", 3}}), CGRect(0, 0, 100, 100));
}

TEST_F(FrameTest, NegativeExtentsOfADictionaryAreKept) {
    EXPECT_EQ(frame(Dictionary{{"width", -50}, {"left", 3}}), CGRect(3, 0, -50, 100));
}

TEST_F(FrameTest, OtherKindsAreNoRectangle) {
    EXPECT_EQ(frame(std::nullopt), std::nullopt);
    EXPECT_EQ(frame("a text"), std::nullopt);
    EXPECT_EQ(frame(5), std::nullopt);
    EXPECT_EQ(frame(PropertyList::List{1, 2, 3, 4}), std::nullopt);
}

TEST_F(FrameTest, ADictionaryOfMoreThanNumbersIsNoRectangle) {
    const Dictionary good{{"left", 1}};
    for (const auto& bad : {PropertyList("1"), PropertyList(true), PropertyList(Data{1}),
                            PropertyList(good), PropertyList(PropertyList::Date{})}) {
        EXPECT_EQ(frame(Dictionary{{"left", 1}, {"other", bad}}), std::nullopt);
        EXPECT_EQ(frame(Dictionary{{"left", bad}}), std::nullopt);
    }
}

TEST_F(FrameTest, NumbersThatAreNot32BitFloatsAreNoRectangle) {
    for (const auto& bad : {PropertyList(0.1), PropertyList(1e300), PropertyList(1e-300),
                            PropertyList(16'777'217), PropertyList(INT64_MAX)}) {
        EXPECT_EQ(frame(Dictionary{{"left", bad}}), std::nullopt) << description(bad);
    }
}

TEST_F(FrameTest, NumbersThatAreExact32BitFloatsAreAccepted) {
    EXPECT_EQ(frame(Dictionary{{"left", 16'777'216}}), CGRect(16'777'216, 0, 100, 100));
    EXPECT_EQ(frame(Dictionary{{"left", INT64_MIN}}), CGRect(-0x1p63, 0, 100, 100));
    EXPECT_EQ(frame(Dictionary{{"left", 0x1p-149}}), CGRect(0x1p-149, 0, 100, 100));
    const auto infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(frame(Dictionary{{"width", infinity}}), CGRect(0, 0, infinity, 100));
    const auto strange = frame(Dictionary{{"top", std::nan("")}});
    ASSERT_TRUE(strange);
    EXPECT_TRUE(std::isnan(strange->origin.y));
}

TEST_F(FrameTest, TheStandardViewIsReadWithItsSearchList) {
    data.setObject("frame", Dictionary{{"left", 10}}, Storage::shared);
    EXPECT_EQ(PersistentAppData::dictionaryToFrame("frame"), CGRect(10, 0, 100, 100));
    data.setObject("frame", Dictionary{{"left", 20}}, Storage::defaults);
    EXPECT_EQ(PersistentAppData::dictionaryToFrame("frame"), CGRect(20, 0, 100, 100));
}

}  // namespace
}  // namespace orvalo::testing
