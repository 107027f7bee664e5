#include "platform/foundation/defaults/PropertyListCoding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>

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

constexpr auto kReferenceDate = Date(978'307'200s);
constexpr auto kEarliest = kReferenceDate - 9'200'000'000'000s;
constexpr auto kLatest = kReferenceDate + 9'200'000'000'000s;

PropertyList thereAndBack(const PropertyList& value) {
    return propertyList(binaryPropertyList(value));
}

Data seed(const std::string& name) {
    std::ifstream stream(std::string(ORVALO_DEFAULTS_SEEDS "/") + name + ".plist",
                         std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
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

class Unchanged : public ::testing::TestWithParam<PropertyList> {};

TEST_P(Unchanged, thereAndBack) {
    EXPECT_EQ(thereAndBack(GetParam()), GetParam()) << description(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Truth, Unchanged, ::testing::Values(true, false));
INSTANTIATE_TEST_SUITE_P(Integer, Unchanged,
                         ::testing::Values(0, 1, -1, 127, 128, 255, 256, -128, -200, 65535, 65536,
                                           0x7FFFFFFF, 0x80000000LL, 0xFFFFFFFFLL, 0x100000000LL,
                                           -0x80000000LL, -0x80000001LL, Int64::max(),
                                           Int64::min()));
INSTANTIATE_TEST_SUITE_P(Double, Unchanged,
                         ::testing::Values(0.0, 1.5, 0.1, 0.1F, -1e300, Double::denorm_min(),
                                           Double::max(), Double::lowest(), Double::infinity(),
                                           -Double::infinity()));
INSTANTIATE_TEST_SUITE_P(Text, Unchanged,
                         ::testing::Values("", "a", "fifteen letters", "more than fifteen letters",
                                           "\x01\x7F\t\n", "ä", "\u07FF\u0800\uFFFD\uD7FF\uE000",
                                           "\U00010000\U0010FFFF\U0001F600 mixed",
                                           std::string(100'000, 'x')));
INSTANTIATE_TEST_SUITE_P(Bytes, Unchanged,
                         ::testing::Values(Data{}, Data{0}, Data{0xFF, 0, 1}, Data(70'000, 7)));
INSTANTIATE_TEST_SUITE_P(When, Unchanged,
                         ::testing::Values(kReferenceDate, kReferenceDate + 1us,
                                           kReferenceDate - 1us, kReferenceDate + 500ms,
                                           kReferenceDate - 500ms, kReferenceDate - 1500ms,
                                           kReferenceDate - 1s, Date(0us), Date(123'456'789'012us),
                                           kReferenceDate + 2'147'483'648s,
                                           kReferenceDate - 2'147'483'649s + 1us, kEarliest,
                                           kLatest, Date(253'402'300'799s)));
INSTANTIATE_TEST_SUITE_P(
    Nested, Unchanged,
    ::testing::Values(List{}, Dictionary{}, List{1, "two", 3.0, List{}, Dictionary{{"a", Data{}}}},
                      List(300, 5), Dictionary{{"", 1}, {"ä", List{true}}, {"a", Dictionary{}}},
                      nested(128)));

TEST(BinaryPropertyList, keepsWhatDoesNotEqualItself) {
    const auto value = thereAndBack(Double::quiet_NaN());
    EXPECT_TRUE(std::isnan(*value.as<double>()));
    EXPECT_TRUE(std::signbit(*thereAndBack(-0.0).as<double>()));
}

TEST(BinaryPropertyList, keepsEveryMicrosecondOfADate) {
    // From 1729 to 2272; a prime, so that the fractions differ from date to date.
    constexpr auto span = 8'589'934'591s;
    for (auto date = kReferenceDate - span; date <= kReferenceDate + span;
         date += 1'717'986'917'999us) {
        ASSERT_EQ(*thereAndBack(date).as<Date>(), date) << date.time_since_epoch().count();
    }
    for (int fraction = 0; fraction < 1'000'000; fraction += 997) {
        for (const auto second : {-8'589'934'591s, -2s, -1s, 0s, 816'945'000s, 8'589'934'590s}) {
            const auto date = kReferenceDate + second + std::chrono::microseconds(fraction);
            ASSERT_EQ(*thereAndBack(date).as<Date>(), date) << date.time_since_epoch().count();
        }
    }
}

TEST(BinaryPropertyList, keepsADateAsNearAsItHoldsIt) {
    // So far off, doubles are 2^-10 s apart, which is 976.5625 us.
    const auto off = kReferenceDate + 8'000'000'000'000s;
    EXPECT_EQ(*thereAndBack(off + 1us).as<Date>(), off);
    EXPECT_EQ(*thereAndBack(off + 500us).as<Date>(), off + 977us);
    EXPECT_EQ(*thereAndBack(off + 977us).as<Date>(), off + 977us);
    // What is read is what was held already.
    for (auto date = kEarliest + 1us; date < kLatest; date += 9'199'999'999'999'999us) {
        const PropertyList value(date);
        ASSERT_EQ(thereAndBack(value), value) << date.time_since_epoch().count();
        ASSERT_LE(abs(*value.as<Date>() - date), 1ms);
    }
}

TEST(BinaryPropertyList, keepsManyKeys) {
    Dictionary many;
    for (int number = 0; number < 2000; ++number) {
        many.emplace("key " + std::to_string(number), number);
    }
    EXPECT_EQ(thereAndBack(many), PropertyList(many));
}

TEST(BinaryPropertyList, refusesTextThatIsNone) {
    const auto reason = "a text in it is not UTF-8 or holds a NUL";
    for (const auto* bad : {"\xFF", "a\xC3", "\xED\xA0\x80", "\xC0\x80"}) {
        EXPECT_THAT([&] { binaryPropertyList(bad); }, refuses(reason));
        EXPECT_THAT([&] { binaryPropertyList(Dictionary{{bad, 1}}); }, refuses(reason));
    }
    EXPECT_THAT([] { binaryPropertyList(List{std::string("a\0b", 3)}); }, refuses(reason));
}

TEST(BinaryPropertyList, refusesDatesOutOfRange) {
    const auto reason = "a date in it is out of range";
    for (const auto date : {kEarliest - 1s, kLatest + 1s, Date::min(), Date::max()}) {
        EXPECT_THAT([&] { binaryPropertyList(date); }, refuses(reason));
    }
}

TEST(BinaryPropertyList, refusesWhatIsTooDeepTooLargeOrTooMuch) {
    EXPECT_THAT([] { binaryPropertyList(nested(129)); }, refuses("it is nested too deeply"));
    EXPECT_THAT([] { binaryPropertyList(Data(17U << 20U, 0)); },
                refuses("it is larger than 16 MB"));
    EXPECT_THAT([] { binaryPropertyList(List(1'000'000, 1)); },
                refuses("it stands for more than a million values"));
}

TEST(PropertyListOfBytes, readsWhatAnotherProgramWrote) {
    EXPECT_EQ(propertyList(seed("all")), PropertyList(Dictionary{
                                             {"", ""},
                                             {"b", false},
                                             {"big", Int64::max()},
                                             {"data", Data{0, 0xFF}},
                                             {"date", Date(1'795'251'600s)},
                                             {"f", 0.1},
                                             {"list", List{1, List{2, List{}}, Dictionary{}}},
                                             {"long", "xxxxxxxxxxxxxxxxxxxx"},
                                             {"n", -1},
                                             {"small", Int64::min()},
                                             {"t", true},
                                             {"text", "häß €😀"},
                                         }));
}

TEST(PropertyListOfBytes, refusesWhatIsNoSettingsValue) {
    EXPECT_THAT([] { propertyList(seed("unsigned")); },
                refuses("an integer in it has more than 64 bits"));
    EXPECT_THAT([] { propertyList(seed("uid")); },
                refuses("it is none of a property list's kinds"));
}

// The bytes of a date: a marker, the seconds as a double, the table of one offset, the trailer.
Data binaryDate(double secondsSinceReferenceDate) {
    auto bytes = binaryPropertyList(kReferenceDate);
    const auto bits = std::bit_cast<std::uint64_t>(secondsSinceReferenceDate);
    for (std::size_t index = 0; index < 8; ++index) {
        bytes[9 + index] = static_cast<std::uint8_t>(bits >> (56 - 8 * index));
    }
    return bytes;
}

TEST(PropertyListOfBytes, refusesADateOutOfRange) {
    EXPECT_EQ(propertyList(binaryDate(-1.25)), PropertyList(kReferenceDate - 1250ms));
    EXPECT_EQ(propertyList(binaryDate(9.2e12)), PropertyList(kLatest));
    for (const double date :
         {9.2e12 + 1, -9.2e12 - 1, 1e300, -1e300, Double::infinity(), Double::quiet_NaN()}) {
        EXPECT_THAT([&] { propertyList(binaryDate(date)); },
                    refuses("a date in it is out of range"))
            << date;
    }
}

TEST(PropertyListOfBytes, takesTheNearestMicrosecondOfADate) {
    EXPECT_EQ(propertyList(binaryDate(0.0000004)), PropertyList(kReferenceDate));
    EXPECT_EQ(propertyList(binaryDate(0.0000006)), PropertyList(kReferenceDate + 1us));
    EXPECT_EQ(propertyList(binaryDate(-0.0000006)), PropertyList(kReferenceDate - 1us));
    EXPECT_EQ(propertyList(binaryDate(-0.0)), PropertyList(kReferenceDate));
}

TEST(PropertyListOfBytes, refusesWhatEndsEarly) {
    const auto whole = seed("all");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_THROW(propertyList(std::span(whole).first(size)), NSError) << size;
    }
    EXPECT_NO_THROW(propertyList(whole));
}

// A list of lists of lists ..., each twice in the one around it: two to the power of levels values.
Data doubling(std::uint8_t levels) {
    Data bytes{'b', 'p', 'l', 'i', 's', 't', '0', '0'};
    Data offsets;
    for (std::uint8_t level = 0; level < levels; ++level) {
        offsets.push_back(static_cast<std::uint8_t>(bytes.size()));
        bytes.insert(bytes.end(), {0xA2, static_cast<std::uint8_t>(level + 1),
                                   static_cast<std::uint8_t>(level + 1)});
    }
    offsets.push_back(static_cast<std::uint8_t>(bytes.size()));
    bytes.push_back(0xA0);
    const auto table = static_cast<std::uint8_t>(bytes.size());
    bytes.insert(bytes.end(), offsets.begin(), offsets.end());
    bytes.insert(bytes.end(), {0, 0, 0, 0, 0, 0, 1, 1});
    for (const auto number : {offsets.size(), std::size_t{0}, std::size_t{table}}) {
        bytes.insert(bytes.end(), {0, 0, 0, 0, 0, 0, 0, static_cast<std::uint8_t>(number)});
    }
    return bytes;
}

TEST(PropertyListOfBytes, refusesWhatStandsForTooMuch) {
    EXPECT_EQ(propertyList(doubling(2)),
              PropertyList(List{List{List{}, List{}}, List{List{}, List{}}}));
    EXPECT_THAT([] { propertyList(doubling(60)); },
                refuses("it stands for more than a million values"));
}

TEST(PropertyListOfBytes, refusesACircle) {
    auto bytes = doubling(2);
    bytes[9] = 0;
    EXPECT_THAT([&] { propertyList(bytes); }, refuses("it is nested too deeply"));
}

}  // namespace
}  // namespace orvalo
