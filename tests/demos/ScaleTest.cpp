#include "demos/theory/Scale.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "demos/theory/Chord.h"
#include "demos/theory/Voicing.h"

using orvalo::Chord;
using orvalo::Mode;
using orvalo::parseChord;
using orvalo::Scale;
using orvalo::voice;

namespace {

TEST(Scale, ContinuesThroughTheOctavesInBothDirections) {
    const Scale scale(2, Mode::dorian);
    std::vector<int> keys;
    for (int degree = -8; degree <= 8; ++degree) {
        keys.push_back(scale.keyOf(degree));
    }
    EXPECT_EQ(keys, (std::vector<int>{36, 38, 40, 41, 43, 45, 47, 48, 50, 52, 53, 55, 57, 59, 60,
                                      62, 64}));
}

TEST(Scale, FindsTheNearestDegreeOrTheLowerOfTwo) {
    const Scale scale(0, Mode::majorPentatonic);
    EXPECT_EQ(scale.keyOf(scale.degreeNear(65)), 64);
    EXPECT_EQ(scale.keyOf(scale.degreeNear(66)), 67);
    EXPECT_EQ(scale.keyOf(scale.degreeNear(53)), 52);
    EXPECT_EQ(scale.keyOf(scale.degreeNear(61)), 60);
}

TEST(Scale, BuildsItsChordsFromSevenNotes) {
    EXPECT_EQ(Scale(4, Mode::minorPentatonic).harmony().size(), 7);
    EXPECT_TRUE(Scale(4, Mode::minorPentatonic).isMinor());
    EXPECT_TRUE(Scale(4, Mode::phrygian).isMinor());
    EXPECT_FALSE(Scale(4, Mode::mixolydian).isMinor());
    EXPECT_FALSE(Scale(4, Mode::phrygianDominant).isMinor());
}

TEST(Chord, LiesInTheScaleWithoutAQuality) {
    const Scale scale(0, Mode::major);
    EXPECT_EQ(parseChord("1", scale), (Chord{0, {0, 4, 7}}));
    EXPECT_EQ(parseChord("2", scale), (Chord{2, {0, 3, 7}}));
    EXPECT_EQ(parseChord("7", scale), (Chord{11, {0, 3, 6}}));
    EXPECT_EQ(parseChord("5:7", scale), (Chord{7, {0, 4, 7, 10}}));
    EXPECT_EQ(parseChord("4:9", scale), (Chord{5, {0, 4, 7, 11, 14}}));
}

TEST(Chord, MayBeAltered) {
    const Scale scale(9, Mode::minor);
    EXPECT_EQ(parseChord("5:D", scale), (Chord{4, {0, 4, 7, 10}}));
    EXPECT_EQ(parseChord("b2:M", scale), (Chord{10, {0, 4, 7}}));
    EXPECT_EQ(parseChord("#4:o7", scale), (Chord{3, {0, 3, 6, 9}}));
    EXPECT_EQ(parseChord("1:p", scale), (Chord{9, {0, 7}}));
    // The seventh of the mixolydian mode is low already: b7 is that note, not a lower one.
    EXPECT_EQ(parseChord("b7:M", Scale(0, Mode::mixolydian)), (Chord{10, {0, 4, 7}}));
}

TEST(Chord, ThrowsForInvalidText) {
    const Scale scale(0, Mode::major);
    for (const char* text : {"", "8", "0", "b", "1:", "1:x", "1M", "x1", "b7", "#4:7", "1:M7 "}) {
        EXPECT_THROW(parseChord(text, scale), std::invalid_argument) << text;
    }
}

TEST(Voicing, MovesItsVoicesMinimally) {
    const Scale scale(0, Mode::major);
    const orvalo::VoicingRange range{48, 79, 3};
    const auto first = voice(parseChord("1", scale), range, {60, 64, 67});
    EXPECT_EQ(first, (std::vector<int>{60, 64, 67}));
    EXPECT_EQ(voice(parseChord("4", scale), range, first), (std::vector<int>{60, 65, 69}));
    EXPECT_EQ(voice(parseChord("5", scale), range, first), (std::vector<int>{59, 62, 67}));
    EXPECT_EQ(voice(parseChord("6", scale), range, first), (std::vector<int>{60, 64, 69}));
}

TEST(Voicing, StaysInItsRangeWhenOpen) {
    const Scale scale(0, Mode::minor);
    const orvalo::VoicingRange range{50, 76, 4, true};
    std::vector<int> keys;
    for (const char* chord : {"1", "4:7", "5:D", "6:9", "3", "7", "2:o", "1:p"}) {
        keys = voice(parseChord(chord, scale), range, keys);
        ASSERT_EQ(keys.size(), 4U) << chord;
        EXPECT_GE(keys.front(), 50) << chord;
        EXPECT_LE(keys.back(), 76) << chord;
        for (const int key : keys) {
            EXPECT_TRUE(parseChord(chord, scale).contains(key)) << chord;
        }
    }
}

}  // namespace
