#include <gtest/gtest.h>

#include <set>
#include <string>

#include "demos/catalogue/Piece.h"

using orvalo::catalogue;
using orvalo::Piece;

namespace {

TEST(Catalogue, HasEightyValidShortLoops) {
    EXPECT_EQ(catalogue().size(), 80U);
    for (const Piece& piece : catalogue()) {
        EXPECT_GE(piece.bars, 4) << piece.title;
        EXPECT_LE(piece.bars, 16) << piece.title;
        EXPECT_GE(piece.tempo, 60) << piece.title;
        EXPECT_LE(piece.tempo, 180) << piece.title;
        EXPECT_GE(piece.tonic, 0) << piece.title;
        EXPECT_LT(piece.tonic, 12) << piece.title;
        EXPECT_GT(piece.frames(), 5 * orvalo::pieceRate) << piece.title;
        EXPECT_LT(piece.frames(), 40 * orvalo::pieceRate) << piece.title;
    }
}

TEST(Catalogue, HasNoEqualRows) {
    std::set<std::string> titles;
    std::set<std::string> music;
    std::set<std::string> bands;
    std::set<std::uint32_t> seeds;
    for (const Piece& piece : catalogue()) {
        titles.emplace(piece.title);
        seeds.insert(piece.seed);
        bands.insert(piece.ensemble() + std::string(piece.style().name));
        music.insert(std::to_string(piece.tonic) + std::string(nameOf(piece.mode)) + ' ' +
                     std::to_string(piece.tempo) + ' ' + piece.ensemble());
    }
    EXPECT_EQ(titles.size(), 80U);
    EXPECT_EQ(seeds.size(), 80U);
    EXPECT_EQ(bands.size(), 80U);
    EXPECT_EQ(music.size(), 80U);
}

TEST(Catalogue, CoversManyStylesMetresAndKeys) {
    std::set<orvalo::Style (*)()> styles;
    std::set<std::string> metres;
    std::set<int> tonics;
    std::set<int> modes;
    std::set<int> tempos;
    for (const Piece& piece : catalogue()) {
        styles.insert(piece.style);
        metres.insert(std::to_string(piece.metre.count) + '/' + std::to_string(piece.metre.unit));
        tonics.insert(piece.tonic);
        modes.insert(static_cast<int>(piece.mode));
        tempos.insert(piece.tempo);
    }
    EXPECT_GE(styles.size(), 50U);
    EXPECT_EQ(metres, (std::set<std::string>{"3/4", "4/4", "5/4", "6/8", "7/8"}));
    EXPECT_EQ(tonics.size(), 12U);
    EXPECT_GE(modes.size(), 12U);
    EXPECT_GE(tempos.size(), 35U);
}

TEST(Piece, RoundsItsLengthToTheNearestFrame) {
    Piece piece = catalogue().front();
    piece.tempo = 120;
    piece.metre = {4, 4};
    piece.bars = 4;
    EXPECT_EQ(piece.frames(), 8 * 48000);
    piece.tempo = 7 * 13;
    piece.metre = {7, 8};
    piece.bars = 1;
    // 3.5 quarters at 91 a minute: 110,769.23 frames.
    EXPECT_EQ(piece.frames(), 110769);
}

}  // namespace
