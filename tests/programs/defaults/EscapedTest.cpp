#include "programs/defaults/format/Escaped.h"

#include <gtest/gtest.h>

namespace orvalo {
namespace {

TEST(Escaped, PlainTextStandsAsItIs) {
    EXPECT_EQ(escaped(""), "");
    EXPECT_EQ(escaped("São Tomé 'x' \"y\" 😀"), "São Tomé 'x' \"y\" 😀");
}

TEST(Escaped, ControlCharactersAndBackslashesAreEscaped) {
    EXPECT_EQ(escaped("a\\b\nc\rd\te\x1b[2J\x7f"), "a\\\\b\\nc\\rd\\te\\u001b[2J\\u007f");
    EXPECT_EQ(escaped("\u009b1m"), "\\u009b1m");
    EXPECT_EQ(escaped(std::string_view("a\0b", 3)), "a\\u0000b");
}

TEST(Escaped, BytesThatAreNoTextAreNamed) {
    EXPECT_EQ(escaped("a\xff"
                      "b\xc3"),
              "a\\xffb\\xc3");
    EXPECT_EQ(escaped("\xed\xa0\x80"), "\\xed\\xa0\\x80");
}

TEST(Escaped, AQuotationIsCutBetweenCharacters) {
    EXPECT_EQ(inQuotes("a"), "'a'");
    EXPECT_EQ(inQuotes(std::string(60, 'x')), "'" + std::string(60, 'x') + "'");
    EXPECT_EQ(inQuotes(std::string(61, 'x')), "'" + std::string(60, 'x') + "...'");
    EXPECT_EQ(inQuotes(std::string(59, 'x') + "é"), "'" + std::string(59, 'x') + "...'");
    EXPECT_EQ(inQuotes(std::string(57, 'x') + "😀"), "'" + std::string(57, 'x') + "...'");
    EXPECT_EQ(shortened(std::string(300, 'y')), std::string(200, 'y') + "...");
}

}  // namespace
}  // namespace orvalo
