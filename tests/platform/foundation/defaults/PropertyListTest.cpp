#include "platform/foundation/defaults/PropertyList.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvalo {
namespace {

using namespace std::chrono_literals;
using Date = PropertyList::Date;
using Dictionary = PropertyList::Dictionary;
using List = PropertyList::List;

TEST(PropertyList, HasTheKindOfItsSource) {
    EXPECT_TRUE(*PropertyList(true).as<bool>());
    EXPECT_EQ(*PropertyList(-3).as<std::int64_t>(), -3);
    EXPECT_EQ(*PropertyList(std::uint32_t{4'000'000'000}).as<std::int64_t>(), 4'000'000'000);
    EXPECT_EQ(*PropertyList(1.5F).as<double>(), 1.5);
    EXPECT_EQ(*PropertyList("text").as<std::string>(), "text");
    EXPECT_EQ(*PropertyList(Data{1, 2}).as<Data>(), (Data{1, 2}));
    EXPECT_EQ(*PropertyList(Date(5us)).as<Date>(), Date(5us));
    EXPECT_EQ(PropertyList(List{1, "two"}).as<List>()->at(1), "two");
    EXPECT_EQ(PropertyList(Dictionary{{"key", 2.0}}).as<Dictionary>()->at("key"), 2.0);
}

TEST(PropertyList, IsNullAsAnotherKind) {
    EXPECT_EQ(PropertyList(true).as<std::int64_t>(), nullptr);
    EXPECT_EQ(PropertyList(1).as<bool>(), nullptr);
    EXPECT_EQ(PropertyList(1).as<double>(), nullptr);
    EXPECT_EQ(PropertyList("1").as<Data>(), nullptr);
}

TEST(PropertyList, DoesNotConvertFromUnsigned64BitIntegers) {
    EXPECT_FALSE((std::is_convertible_v<std::uint64_t, PropertyList>));
    EXPECT_TRUE((std::is_convertible_v<std::int64_t, PropertyList>));
}

TEST(PropertyList, EqualsOnlyTheSameValueOfTheSameKind) {
    EXPECT_EQ(PropertyList(List{1, "a"}), PropertyList(List{1, "a"}));
    EXPECT_NE(PropertyList(1), PropertyList(1.0));
    EXPECT_NE(PropertyList(1), PropertyList(true));
    EXPECT_NE(PropertyList(Dictionary{{"a", 1}}), PropertyList(Dictionary{{"b", 1}}));
}

TEST(PropertyListDescription, FormatsASingleValue) {
    EXPECT_EQ(description(true), "1");
    EXPECT_EQ(description(false), "0");
    EXPECT_EQ(description(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(description(1.0), "1");
    EXPECT_EQ(description(0.1), "0.1");
    EXPECT_EQ(description(1e300), "1e+300");
    EXPECT_EQ(description("two words"), "two words");
    EXPECT_EQ(description(Data{0x0A, 0xF0}), "{length = 2, bytes = 0x0af0}");
    EXPECT_EQ(description(Date(978'307'200s)), "2001-01-01 00:00:00 +0000");
    EXPECT_EQ(description(Date(-1us)), "1969-12-31 23:59:59 +0000");
    EXPECT_EQ(description(Date(2'147'483'648s)), "2038-01-19 03:14:08 +0000");
    EXPECT_EQ(description(Date(-62'135'596'800s)), "0001-01-01 00:00:00 +0000");
    EXPECT_EQ(description(Date(253'402'300'799'999'999us)), "9999-12-31 23:59:59 +0000");
    EXPECT_EQ(description(Date::min()), "a date outside the years 1 to 9999");
    EXPECT_EQ(description(Date::max()), "a date outside the years 1 to 9999");
}

TEST(PropertyListDescription, FormatsNestedValues) {
    const PropertyList value = Dictionary{
        {"a key", List{1, "plain_$/:.", "two words", R"(say "\")", ""}},
        {"empty", List{}},
        {"inner", Dictionary{{"when", Date(0us)}}},
    };
    EXPECT_EQ(description(value),
              "{\n"
              "    \"a key\" = (\n"
              "        1,\n"
              "        plain_$/:.,\n"
              "        \"two words\",\n"
              "        \"say \\\"\\\\\\\"\",\n"
              "        \"\"\n"
              "    );\n"
              "    empty = (\n"
              "    );\n"
              "    inner = {\n"
              "        when = \"1970-01-01 00:00:00 +0000\";\n"
              "    };\n"
              "}");
}

}  // namespace
}  // namespace orvalo
