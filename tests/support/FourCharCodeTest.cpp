#include "support/FourCharCode.h"

#include <gtest/gtest.h>

namespace orvalo {
namespace {

TEST(FourCharCode, StartsWithTheMostSignificantByte) {
    EXPECT_EQ(stringValue(0x61756678), "aufx");
    EXPECT_EQ(stringValue(0x61756D66), "aumf");
    EXPECT_EQ(stringValue(0x6F72564C), "orVL");
    EXPECT_EQ(stringValue(0x54534C59), "TSLY");
}

TEST(FourCharCode, ZeroIsFourNULs) {
    EXPECT_EQ(stringValue(0), std::string(4, '\0'));
}

TEST(FourCharCode, TrimsAndEscapesNothing) {
    EXPECT_EQ(stringValue(0x20092020), " \t  ");
    EXPECT_EQ(stringValue(0x410A0D7F), "A\n\r\x7f");
}

TEST(FourCharCode, TheLowerHalfIsASCII) {
    for (std::uint32_t byte = 0; byte < 0x80; ++byte) {
        EXPECT_EQ(stringValue(byte), std::string(3, '\0') + static_cast<char>(byte)) << byte;
    }
}

TEST(FourCharCode, TheUpperHalfIsMacRoman) {
    // The characters from 0x80 on, as Apple maps them to Unicode.
    const std::u32string characters =
        U"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø¿¡¬√ƒ≈∆«»…\u00A0ÀÃÕŒœ–—“”"
        U"‘’÷"
        U"◊ÿŸ⁄€‹›ﬁﬂ‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uF8FFÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ";
    ASSERT_EQ(characters.size(), 128U);
    for (std::uint32_t index = 0; index < 128; ++index) {
        std::string expected(3, '\0');
        const auto point = static_cast<std::uint32_t>(characters[index]);
        if (point < 0x800) {
            expected += static_cast<char>(0xC0U | point >> 6U);
        } else {
            expected += static_cast<char>(0xE0U | point >> 12U);
            expected += static_cast<char>(0x80U | (point >> 6U & 0x3FU));
        }
        expected += static_cast<char>(0x80U | (point & 0x3FU));
        EXPECT_EQ(stringValue(0x80 + index), expected) << std::hex << 0x80 + index;
    }
}

}  // namespace
}  // namespace orvalo
