#include <gtest/gtest.h>

#include <limits>
#include <utility>
#include <vector>

#include "tests/persistence/PersistenceFixture.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo::testing {
namespace {

class DumpTest : public PersistenceFixture {
  protected:
    std::string dump() const {
        const CapturedOutput output;
        data.dumpout();
        return output.text();
    }
};

constexpr auto kStandard = "PersistentAppData::dumpout() : UserDefaults.standard : \n";
constexpr auto kShared = "PersistentAppData::dumpout() : UserDefaults.shared : \n";
constexpr auto kCombined = "PersistentAppData::dumpout() : UserDefaults.combined : \n";

/// The dump of a single value, which the group has.
std::string ofTheGroup(const std::string& key, const std::string& text) {
    const std::string entry = key + " = " + text + " \n\n";
    return kStandard + entry + kShared + entry + kCombined + entry;
}

TEST_F(DumpTest, EmptyViewsAreTheirHeaders) {
    EXPECT_EQ(dump(), std::string(kStandard) + kShared + kCombined);
}

TEST_F(DumpTest, AnEntryIsALineAndAnEmptyOne) {
    data.setString("key", "a text");
    EXPECT_EQ(dump(), std::string(kStandard) + "key = a text \n\n" + kShared + kCombined +
                          "key = a text \n\n");
}

TEST_F(DumpTest, AViewShowsTheValuesOfItsSearchList) {
    data.setInteger("number", -3, Storage::shared);
    data.setBool("truth", true, Storage::defaults);
    const std::string both = "number = -3 \n\ntruth = 1 \n\n";
    EXPECT_EQ(dump(), kStandard + both + kShared + "number = -3 \n\n" + kCombined + both);
}

TEST_F(DumpTest, AnOwnValueHidesTheGroups) {
    data.setString("key", "group's", Storage::shared);
    data.setString("key", "own");
    EXPECT_EQ(dump(), std::string(kStandard) + "key = own \n\n" + kShared + "key = group's \n\n" +
                          kCombined + "key = own \n\n");
}

TEST_F(DumpTest, AValueIsItsTextualForm) {
    const PropertyList nested = PropertyList::Dictionary{{"a", PropertyList::List{1, "b c"}}};
    for (const auto& value : {PropertyList(0.5), PropertyList(Data{0x0A, 0x1B}), PropertyList(""),
                              nested, PropertyList(PropertyList::Date{})}) {
        data.setObject("key", value, Storage::shared);
        EXPECT_EQ(dump(), ofTheGroup("key", description(value)));
    }
}

TEST_F(DumpTest, AFloatHasTheDigitsOfAFloat) {
    data.setFloat("gain", 0.1F, Storage::shared);
    EXPECT_EQ(dump(), ofTheGroup("gain", "0.1"));
    for (const auto& [value, digits] : std::vector<std::pair<PropertyList, std::string>>{
             {-16.7F, "-16.7"},
             {std::numeric_limits<float>::max(), "3.4028235e+38"},
             {std::numeric_limits<float>::denorm_min(), "1e-45"},
             {0.1, "0.1"},
             {1.0 / 3, "0.3333333333333333"},
             {16'777'217.0, "16777217"},
             {1e300, "1e+300"},
             {std::numeric_limits<double>::infinity(), "inf"},
             {PropertyList::List{0.1F}, "(\n    0.1\n)"}}) {
        data.setObject("gain", value, Storage::shared);
        EXPECT_EQ(dump(), ofTheGroup("gain", digits));
    }
}

TEST_F(DumpTest, TextIsPrintedUnchanged) {
    data.setString("k\ney", "line\nfeed\ttab", Storage::shared);
    EXPECT_EQ(dump(), ofTheGroup("k\ney", "line\nfeed\ttab"));
}

}  // namespace
}  // namespace orvalo::testing
