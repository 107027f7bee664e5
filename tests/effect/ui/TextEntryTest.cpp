#include "effect/ui/model/TextEntry.h"

#include <gtest/gtest.h>

namespace {

using orvalo::effect::ui::TextEntry;

void type(TextEntry& entry, const char* text) {
    for (; *text != '\0'; ++text) {
        entry.insert(static_cast<unsigned char>(*text));
    }
}

TEST(TextEntry, TypingReplacesTheSelectedText) {
    TextEntry entry("-18.0 dB");
    EXPECT_TRUE(entry.isAllSelected());
    type(entry, "-12");
    EXPECT_EQ(entry.text(), "-12");
    EXPECT_EQ(entry.caret(), 3U);
    EXPECT_FALSE(entry.isAllSelected());
}

TEST(TextEntry, EditsAtTheCaret) {
    TextEntry entry("1234");
    entry.moveBy(-1);
    EXPECT_EQ(entry.caret(), 0U);
    entry.moveBy(1);
    entry.insert('x');
    EXPECT_EQ(entry.text(), "1x234");
    entry.eraseAfter();
    EXPECT_EQ(entry.text(), "1x34");
    entry.eraseBefore();
    entry.eraseBefore();
    entry.eraseBefore();
    EXPECT_EQ(entry.text(), "34");
    entry.moveToEnd();
    entry.eraseAfter();
    entry.moveBy(1);
    EXPECT_EQ(entry.caret(), 2U);
    entry.moveToStart();
    entry.moveBy(-1);
    EXPECT_EQ(entry.caret(), 0U);
}

TEST(TextEntry, ErasesTheSelection) {
    TextEntry before("12");
    before.eraseBefore();
    EXPECT_EQ(before.text(), "");
    EXPECT_FALSE(before.isAllSelected());
    TextEntry after("12");
    after.moveToEnd();
    after.selectAll();
    after.eraseAfter();
    EXPECT_EQ(after.text(), "");
    after.selectAll();
    EXPECT_FALSE(after.isAllSelected());
}

TEST(TextEntry, IgnoresControlCharactersAndExcessText) {
    TextEntry entry("");
    type(entry, "\n\t\x7F");
    EXPECT_EQ(entry.text(), "");
    for (int i = 0; i < 100; ++i) {
        entry.insert('1');
    }
    EXPECT_EQ(entry.text(), std::string(TextEntry::longest, '1'));
}

TEST(TextEntry, TakesUtf8CharactersAsOne) {
    TextEntry entry("B\u00e4\u00df", TextEntry::longestName);
    entry.moveToEnd();
    entry.moveBy(-1);
    EXPECT_EQ(entry.caret(), 3U);
    entry.eraseBefore();
    EXPECT_EQ(entry.text(), "B\u00df");
    entry.eraseAfter();
    EXPECT_EQ(entry.text(), "B");
    entry.moveBy(-1);
    entry.moveBy(-1);
    EXPECT_EQ(entry.caret(), 0U);
}

TEST(TextEntry, TakesTypedCharactersOfAllLanguages) {
    TextEntry entry("", TextEntry::longestName);
    for (const char32_t c : U"a\u00e4\u03a9\u20ac\U0001d11e\u07ff\u0800\uffff\U00010000") {
        entry.insert(c);
    }
    EXPECT_EQ(entry.text(), "a\u00e4\u03a9\u20ac\U0001d11e\u07ff\u0800\uffff\U00010000");
    entry.insert(0x7F);
    entry.insert(0x85);
    entry.insert(0x1F);
    entry.eraseBefore();
    entry.eraseBefore();
    entry.eraseBefore();
    entry.eraseBefore();
    EXPECT_EQ(entry.text(), "a\u00e4\u03a9\u20ac\U0001d11e");
}

TEST(TextEntry, StaysValidUtf8) {
    TextEntry entry("");
    // A mapped key may give any number below 0x1000000.
    for (const char32_t c : {0xD7FFU, 0xD800U, 0xDFFFU, 0xE000U, 0x10FFFFU, 0x110000U, 0xFFFFFFU}) {
        entry.insert(c);
    }
    EXPECT_EQ(entry.text(), "\ud7ff\ue000\U0010ffff");
}

TEST(TextEntry, NameMayBeLongerThanAValue) {
    TextEntry name("", TextEntry::longestName);
    TextEntry value("");
    for (std::size_t i = 0; i < 100; ++i) {
        name.insert('x');
        value.insert('x');
    }
    EXPECT_EQ(name.text().size(), 40U);
    EXPECT_EQ(value.text().size(), 24U);
}

}  // namespace
