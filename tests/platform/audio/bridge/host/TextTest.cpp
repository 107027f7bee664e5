#include <gtest/gtest.h>

#include "platform/audio/bridge/host/PlainText.h"

namespace {

using namespace orvalo;

TEST(PlainText, KeepsPrintableText) {
    EXPECT_EQ(plainText("A plain line, with ümläuts and 音."),
              "A plain line, with ümläuts and 音.");
    EXPECT_EQ(plainText(""), "");
}

TEST(PlainText, ReplacesControlCharactersWithSpaces) {
    EXPECT_EQ(plainText("a\x1B[31mb\nc\td\x7F"
                        "e\xC2\x85"
                        "f"),
              "a [31mb c d e f");
}

TEST(PlainText, TrimsSpaces) {
    EXPECT_EQ(plainText(" \n a b \r\n\t "), "a b");
    EXPECT_EQ(plainText("\n\n"), "");
}

TEST(PlainText, ReplacesInvalidUTF8) {
    EXPECT_EQ(plainText("a\xFF"
                        "b\xC3"),
              "a\uFFFDb\uFFFD");
    EXPECT_EQ(plainText(std::string_view("a\0b", 3)), "a\uFFFDb");
}

TEST(PlainText, CutsBetweenCharacters) {
    EXPECT_EQ(plainText("aaaü", 4), "aaa");
    EXPECT_EQ(plainText("aaaü", 5), "aaaü");
    EXPECT_EQ(plainText(std::string(5000, 'x')).size(), 2000U);
}

}  // namespace
