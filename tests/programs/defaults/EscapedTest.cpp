#include "programs/defaults/format/Escaped.h"

#include <gtest/gtest.h>

namespace orvalo {
namespace {

TEST(Escaped, PlainTextIsUnchanged) {
    EXPECT_EQ(escaped(""), "");
    EXPECT_EQ(escaped("São Tomé 'x' \"y\" 😀"), "São Tomé 'x' \"y\" 😀");
}

TEST(Escaped, ControlCharactersAndBackslashesAreEscaped) {
    EXPECT_EQ(escaped("a\\b\nc\x1b[2J\x7f"), "a\\\\b\\nc\\u001b[2J\\u007f");
    EXPECT_EQ(escaped("\u009b1m"), "\\u009b1m");
}

TEST(Escaped, BytesThatAreNotUTF8AreReplaced) {
    EXPECT_EQ(escaped("a\xff"
                      "b\xc3"),
              "a\uFFFDb\uFFFD");
}

TEST(Escaped, ALongQuotationIsCut) {
    EXPECT_EQ(inQuotes("a"), "'a'");
    EXPECT_EQ(inQuotes(std::string(60, 'x')), "'" + std::string(60, 'x') + "'");
    EXPECT_EQ(inQuotes(std::string(61, 'x')), "'" + std::string(60, 'x') + "...'");
}

TEST(WithoutControls, LineFeedsAndBackslashesStay) {
    EXPECT_EQ(withoutControls("\\\n\x7f"), "\\\n\\u007f");
}

}  // namespace
}  // namespace orvalo
