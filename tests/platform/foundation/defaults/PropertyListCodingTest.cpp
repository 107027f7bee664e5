#include "platform/foundation/defaults/PropertyListCoding.h"

#include <glib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/NSError.h"

namespace orvalo {
namespace {

using namespace std::chrono_literals;
using ::testing::Property;
using ::testing::StrEq;
using ::testing::Throws;
using Date = PropertyList::Date;
using Dictionary = PropertyList::Dictionary;
using List = PropertyList::List;
using Int64 = std::numeric_limits<std::int64_t>;
using Double = std::numeric_limits<double>;

constexpr auto kEarliest = Date(-62'135'596'800s);
constexpr auto kLatest = Date(253'402'300'799'999'999us);

PropertyList thereAndBack(const PropertyList& value) {
    return propertyList(binaryPropertyList(value));
}

auto refuses(const char* reason) {
    return Throws<NSError>(Property(&NSError::localizedDescription, StrEq(reason)));
}

PropertyList nested(int depth) {
    PropertyList value = List{};
    for (int level = 1; level < depth; ++level) {
        value = level % 2 == 0 ? PropertyList(List{value}) : PropertyList(Dictionary{{"", value}});
    }
    return value;
}

class RoundTrip : public ::testing::TestWithParam<PropertyList> {};

TEST_P(RoundTrip, ChangesNoValue) {
    EXPECT_EQ(thereAndBack(GetParam()), GetParam()) << description(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Truth, RoundTrip, ::testing::Values(true, false));
INSTANTIATE_TEST_SUITE_P(Integer, RoundTrip,
                         ::testing::Values(0, 1, -1, 127, 128, 255, 256, -128, -200, 65535, 65536,
                                           0x7FFFFFFF, 0x80000000LL, 0xFFFFFFFFLL, 0x100000000LL,
                                           -0x80000000LL, -0x80000001LL, Int64::max(),
                                           Int64::min()));
INSTANTIATE_TEST_SUITE_P(Double, RoundTrip,
                         ::testing::Values(0.0, 1.5, 0.1, 0.1F, -1e300, Double::denorm_min(),
                                           Double::max(), Double::lowest(), Double::infinity(),
                                           -Double::infinity()));
INSTANTIATE_TEST_SUITE_P(Text, RoundTrip,
                         ::testing::Values("", "a", "fifteen letters", "more than fifteen letters",
                                           "\x01\x7F\t\n", "ä", "\u07FF\u0800\uFFFD\uD7FF\uE000",
                                           "\U00010000\U0010FFFF\U0001F600 mixed",
                                           std::string(100'000, 'x')));
INSTANTIATE_TEST_SUITE_P(Bytes, RoundTrip,
                         ::testing::Values(Data{}, Data{0}, Data{0xFF, 0, 1}, Data(70'000, 7)));
INSTANTIATE_TEST_SUITE_P(When, RoundTrip,
                         ::testing::Values(Date(0us), Date(1us), Date(-1us), Date(-1500ms),
                                           Date(123'456'789'012us), kEarliest, kEarliest + 1us,
                                           kLatest - 1us, kLatest));
INSTANTIATE_TEST_SUITE_P(
    Nested, RoundTrip,
    ::testing::Values(List{}, Dictionary{}, List{1, "two", 3.0, List{}, Dictionary{{"a", Data{}}}},
                      List(300, 5), Dictionary{{"", 1}, {"ä", List{true}}, {"a", Dictionary{}}},
                      nested(40)));

TEST(BinaryPropertyList, KeepsNaNAndNegativeZero) {
    const auto value = thereAndBack(Double::quiet_NaN());
    EXPECT_TRUE(std::isnan(*value.as<double>()));
    EXPECT_TRUE(std::signbit(*thereAndBack(-0.0).as<double>()));
}

TEST(BinaryPropertyList, KeepsManyKeys) {
    Dictionary many;
    for (int number = 0; number < 2000; ++number) {
        many.emplace("key " + std::to_string(number), number);
    }
    EXPECT_EQ(thereAndBack(many), PropertyList(many));
}

TEST(BinaryPropertyList, RefusesTextThatIsNotUTF8OrHoldsANUL) {
    const auto* const reason = "a text in it is not UTF-8 or holds a NUL";
    for (const auto* bad : {"\xFF", "a\xC3", "\xED\xA0\x80", "\xC0\x80"}) {
        EXPECT_THAT([&] { binaryPropertyList(bad); }, refuses(reason));
        EXPECT_THAT([&] { binaryPropertyList(Dictionary{{bad, 1}}); }, refuses(reason));
    }
    EXPECT_THAT([] { binaryPropertyList(List{std::string("a\0b", 3)}); }, refuses(reason));
}

TEST(BinaryPropertyList, RefusesDatesOutsideTheYears1To9999) {
    const auto* const reason = "a date in it is outside the years 1 to 9999";
    for (const auto date : {kEarliest - 1us, kLatest + 1us, Date::min(), Date::max()}) {
        EXPECT_THAT([&] { binaryPropertyList(date); }, refuses(reason));
    }
}

TEST(BinaryPropertyList, RefusesWhatIsTooDeepOrTooLarge) {
    EXPECT_THAT([] { binaryPropertyList(nested(41)); }, refuses("it is nested too deeply"));
    EXPECT_THAT([] { binaryPropertyList(nested(1000)); }, refuses("it is nested too deeply"));
    EXPECT_THAT([] { binaryPropertyList(Data(17U << 20U, 0)); },
                refuses("it is larger than 16 MB"));
}

/// The bytes of a variant in GVariant's text format.
Data binary(const char* text) {
    using Variant = std::unique_ptr<GVariant, Release<g_variant_unref>>;
    const Variant content(g_variant_parse(nullptr, text, nullptr, nullptr, nullptr));
    const Variant variant(g_variant_new_variant(content.get()));
    Data bytes(g_variant_get_size(variant.get()));
    g_variant_store(variant.get(), bytes.data());
    return bytes;
}

TEST(PropertyListOfBytes, ReadsEveryKind) {
    EXPECT_EQ(propertyList(binary("{'b': <true>, 'x': <int64 -1>, 'd': <0.5>, 's': <'ä'>, "
                                  "'ay': <[byte 0, 255]>, 'date': <(int64 1,)>, "
                                  "'av': <[<int64 2>]>}")),
              PropertyList(Dictionary{{"b", true},
                                      {"x", -1},
                                      {"d", 0.5},
                                      {"s", "ä"},
                                      {"ay", Data{0, 255}},
                                      {"date", Date(1us)},
                                      {"av", List{2}}}));
}

TEST(PropertyListOfBytes, RefusesOtherKinds) {
    for (const auto* other : {"1", "uint64 1", "()", "['text']", "{'a': 1}", "@mv nothing",
                              "objectpath '/'", "<<true>>"}) {
        EXPECT_THAT([&] { propertyList(binary(other)); },
                    refuses("it is of a kind that settings do not have"))
            << other;
    }
    EXPECT_THAT([] { propertyList(binary("[<1>]")); },
                refuses("it is of a kind that settings do not have"));
}

TEST(PropertyListOfBytes, RefusesADateOutsideTheYears1To9999) {
    EXPECT_THAT([] { propertyList(binary("(int64 253402300800000000,)")); },
                refuses("a date in it is outside the years 1 to 9999"));
}

TEST(PropertyListOfBytes, RefusesNestingThatIsTooDeep) {
    const auto deep = [](int depth) {
        std::string text = "@av []";
        for (int level = 1; level < depth; ++level) {
            text.insert(0, "[<").append(">]");
        }
        return binary(text.c_str());
    };
    // clang takes List{List{}} for a copy of the inner list.
    EXPECT_EQ(propertyList(deep(3)), PropertyList(List{PropertyList(List{PropertyList(List{})})}));
    EXPECT_THAT([&] { propertyList(deep(41)); }, refuses("it is nested too deeply"));
}

TEST(PropertyListOfBytes, RefusesWhatEndsEarly) {
    const auto whole = binaryPropertyList(Dictionary{{"a", List{1, "two"}}, {"b", 0.5}});
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_THROW(propertyList(std::span(whole).first(size)), NSError) << size;
    }
    EXPECT_NO_THROW(propertyList(whole));
}

}  // namespace
}  // namespace orvalo
