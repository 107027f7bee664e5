#include "platform/foundation/OneLine.h"

#include <gtest/gtest.h>

namespace orvalo {
namespace {

TEST(OneLine, PlainTextIsUnchanged) {
    EXPECT_EQ(onOneLine(""), "");
    EXPECT_EQ(onOneLine("São Tomé 'x' \"y\" \\ 😀"), "São Tomé 'x' \"y\" \\ 😀");
}

TEST(OneLine, ControlCharactersAreEscaped) {
    EXPECT_EQ(onOneLine("a\nb\tc\r\x1b[2J\x7f\u009b1m"),
              "a\\nb\\u0009c\\u000d\\u001b[2J\\u007f\\u009b1m");
}

TEST(OneLine, BytesThatAreNotUTF8AreReplaced) {
    EXPECT_EQ(onOneLine("a\xff"
                        "b\xc3"),
              "a\uFFFDb\uFFFD");
}

}  // namespace
}  // namespace orvalo
