#include "programs/defaults/format/ScalarText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace orvalo {
namespace {

PropertyList::Date date(std::int64_t microseconds) {
    return PropertyList::Date(std::chrono::microseconds(microseconds));
}

TEST(DateText, IsISO8601InUTC) {
    EXPECT_EQ(dateText(date(0)), "1970-01-01T00:00:00Z");
    EXPECT_EQ(dateText(date(951'782'400'000'000)), "2000-02-29T00:00:00Z");
    EXPECT_EQ(dateText(date(1'700'000'000'250'000)), "2023-11-14T22:13:20.25Z");
    EXPECT_EQ(dateText(date(1'700'000'000'000'001)), "2023-11-14T22:13:20.000001Z");
    EXPECT_EQ(dateText(date(-62'135'596'800'000'000)), "0001-01-01T00:00:00Z");
    EXPECT_EQ(dateText(date(-1)), "1969-12-31T23:59:59.999999Z");
}

TEST(DateText, HasASignWhereTheYearHasNotFourDigits) {
    EXPECT_EQ(dateText(date(253'402'300'799'000'000)), "9999-12-31T23:59:59Z");
    EXPECT_EQ(dateText(date(253'402'300'800'000'000)), "+10000-01-01T00:00:00Z");
    EXPECT_EQ(dateText(date(9'000'000'000'000'000'000)), "+287168-08-24T16:00:00Z");
    EXPECT_EQ(dateText(date(-62'167'219'200'000'000)), "0000-01-01T00:00:00Z");
    EXPECT_EQ(dateText(date(-62'167'219'200'000'001)), "-0001-12-31T23:59:59.999999Z");
    EXPECT_EQ(dateText(date(-9'000'000'000'000'000'000)), "-283229-05-10T08:00:00Z");
}

TEST(DateText, IsReadAsTheSameDate) {
    for (const std::int64_t microseconds :
         {std::int64_t{0}, std::int64_t{-1}, std::int64_t{1}, std::int64_t{100'000},
          std::int64_t{-1'169'000'000'000'001}, std::int64_t{3'125'000'000'999'999},
          std::int64_t{253'402'300'800'000'000}, std::int64_t{-62'167'219'200'000'001},
          std::int64_t{-62'135'596'800'000'001}, std::int64_t{9'000'000'000'000'000'000},
          std::int64_t{-9'000'000'000'000'000'000}}) {
        EXPECT_EQ(dateValue(dateText(date(microseconds))), date(microseconds));
    }
}

TEST(DateText, OfADateThatThereIsNotIsRefused) {
    for (const auto* text : {"",
                             "Z",
                             "2023-11-14",
                             "2023-11-14T22:13:20",
                             "2023-11-14 22:13:20Z",
                             "2023-02-29T00:00:00Z",
                             "2023-13-01T00:00:00Z",
                             "2023-00-01T00:00:00Z",
                             "2023-01-32T00:00:00Z",
                             "2023-01-01T24:00:00Z",
                             "2023-01-01T00:60:00Z",
                             "2023-01-01T00:00:60Z",
                             "2023-01-01T00:00:00.Z",
                             "2023-01-01T00:00:00.1234567Z",
                             "2023-01-01T00:00:00.1xZ",
                             "2023-01-01T00:00:00,5Z",
                             "2023-01-01T00:00:00+01:00",
                             "-023-01-01T00:00:00Z",
                             "12023-01-01T00:00:00Z",
                             "+1012023-01-01T00:00:00Z",
                             "+300000-01-01T00:00:00Z",
                             "-300000-01-01T00:00:00Z",
                             "-0001-02-29T00:00:00Z",
                             "+2023",
                             "+-2023-01-01T00:00:00Z",
                             "2023-01-01T00:00:00ZZ",
                             " 2023-01-01T00:00:00Z",
                             "2023-01-01T00:00:0\u0661Z"}) {
        EXPECT_EQ(dateValue(text), std::nullopt) << text;
    }
}

TEST(Base64Text, IsReadAsTheSameData) {
    for (const auto& data : {Data{}, Data{0}, Data{0xFB, 0xFF}, Data{1, 2, 3}, Data(1000, 0xAA)}) {
        EXPECT_EQ(base64Value(base64Text(data)), data);
    }
    EXPECT_EQ(base64Text({0xFB, 0xFF}), "+/8=");
    EXPECT_EQ(base64Value(" +/\n\t8= \r\n"), (Data{0xFB, 0xFF}));
}

TEST(Base64Text, OfAnotherAlphabetOrLengthIsRefused) {
    for (const auto* text :
         {"A", "AA", "AAA", "AA=", "-_8=", "AAAA=", "AA==AA==", "=", "+/9=x", "A\x01=="}) {
        EXPECT_EQ(base64Value(text), std::nullopt) << text;
    }
}

TEST(IntegerText, Has64Bits) {
    EXPECT_EQ(integerValue("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(integerValue("+9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(integerValue("007"), 7);
    for (const auto* text : {"", "+", "-", "+-1", "--1", "1.0", "1e3", "0x10", " 1", "1 ", "one",
                             "9223372036854775808", "-9223372036854775809"}) {
        EXPECT_EQ(integerValue(text), std::nullopt) << text;
    }
}

TEST(RealText, IsTheShortestThatIsReadAsTheSame) {
    EXPECT_EQ(realText(0.1), "0.1");
    EXPECT_EQ(realText(-0.0), "-0");
    EXPECT_EQ(realText(1e300), "1e+300");
    EXPECT_EQ(realText(5e-324), "5e-324");
    for (const double value : {0.1, 1.0 / 3, 1e300, 5e-324, 123456789.125}) {
        EXPECT_EQ(realValue(realText(value)), value);
    }
}

TEST(RealText, InfinityAndNaNAreNumbers) {
    const auto infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(realText(infinity), "inf");
    EXPECT_EQ(realText(-infinity), "-inf");
    EXPECT_EQ(realText(std::nan("")), "nan");
    EXPECT_EQ(realText(-std::nan("")), "nan");
    EXPECT_EQ(realValue("inf"), infinity);
    EXPECT_EQ(realValue("+infinity"), infinity);
    EXPECT_EQ(realValue("-infinity"), -infinity);
    EXPECT_TRUE(std::isnan(realValue("nan").value_or(0)));
}

TEST(RealText, OfNoNumberIsRefused) {
    for (const auto* text : {"", "+", "1,5", "1.5 ", "0x1p3", "1e400", "-1e400", "nan(1)", "one"}) {
        EXPECT_EQ(realValue(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace orvalo
