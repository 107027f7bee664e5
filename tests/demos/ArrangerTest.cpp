#include "demos/playing/Arranger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <tuple>
#include <vector>

#include "demos/styles/Styles.h"
#include "demos/theory/Scale.h"

using orvalo::arrange;
using orvalo::catalogue;
using orvalo::Note;
using orvalo::Piece;
using orvalo::Score;

namespace {

std::vector<std::tuple<int, int, int, int, int>> written(const Score& score) {
    std::vector<std::tuple<int, int, int, int, int>> notes;
    for (const Note& note : score.notes) {
        notes.emplace_back(note.part, note.tick, note.length, note.key, note.velocity);
    }
    return notes;
}

TEST(Arranger, WritesTheSameScoreForTheSameRow) {
    for (const Piece& piece : catalogue()) {
        EXPECT_EQ(written(arrange(piece)), written(arrange(piece))) << piece.title;
    }
}

TEST(Arranger, WritesAnotherScoreForAnotherSeed) {
    Piece piece = catalogue().front();
    const auto first = written(arrange(piece));
    ++piece.seed;
    EXPECT_NE(written(arrange(piece)), first);
}

TEST(Arranger, KeepsAllNotesWithinTheLoopAndTheInstruments) {
    for (const Piece& piece : catalogue()) {
        const Score score = arrange(piece);
        EXPECT_EQ(score.loopTicks, piece.bars * piece.metre.barTicks()) << piece.title;
        ASSERT_FALSE(score.notes.empty()) << piece.title;
        for (const Note& note : score.notes) {
            ASSERT_GE(note.tick, 0) << piece.title;
            ASSERT_LT(note.tick, score.loopTicks) << piece.title;
            ASSERT_GT(note.length, 0) << piece.title;
            ASSERT_GE(note.velocity, 1) << piece.title;
            ASSERT_LE(note.velocity, 127) << piece.title;
            const orvalo::Part& part = score.parts.at(static_cast<std::size_t>(note.part));
            if (!part.drums) {
                const auto& facts = factsOf(static_cast<orvalo::Instrument>(part.program));
                ASSERT_GE(note.key, facts.low) << piece.title << ", " << facts.name;
                ASSERT_LE(note.key, facts.high) << piece.title << ", " << facts.name;
            }
        }
    }
}

TEST(Arranger, GivesEveryPartSomethingToPlay) {
    for (const Piece& piece : catalogue()) {
        const Score score = arrange(piece);
        std::set<int> playing;
        for (const Note& note : score.notes) {
            playing.insert(note.part);
        }
        EXPECT_EQ(playing.size(), score.parts.size()) << piece.title;
    }
}

TEST(Arranger, HasLoudAndSoftNotes) {
    for (const Piece& piece : catalogue()) {
        const Score score = arrange(piece);
        const auto [soft, loud] = std::ranges::minmax_element(score.notes, {}, &Note::velocity);
        EXPECT_GE(loud->velocity - soft->velocity, 20) << piece.title;
    }
}

TEST(Arranger, KeepsMostOfThePitchesInTheScaleOfTheKey) {
    for (const Piece& piece : catalogue()) {
        const Score score = arrange(piece);
        const orvalo::Scale scale = orvalo::Scale(piece.tonic, piece.mode).harmony();
        int inside = 0;
        int all = 0;
        for (const Note& note : score.notes) {
            if (!score.parts.at(static_cast<std::size_t>(note.part)).drums) {
                ++all;
                inside += scale.contains(note.key) ? 1 : 0;
            }
        }
        EXPECT_GE(10 * inside, 7 * all) << piece.title;
    }
}

TEST(Arranger, SwellEndsWhereItStarts) {
    const auto piece = std::ranges::find(catalogue(), &orvalo::choraleStyle, &Piece::style);
    const Score score = arrange(*piece);
    ASSERT_FALSE(score.swells.empty());
    for (int part = 0; part < static_cast<int>(score.parts.size()); ++part) {
        std::vector<int> curve;
        for (const orvalo::Swell& swell : score.swells) {
            if (swell.part == part) {
                curve.push_back(swell.expression);
            }
        }
        if (curve.empty()) {
            continue;
        }
        EXPECT_EQ(*std::ranges::max_element(curve), 127);
        EXPECT_LT(curve.front(), 90);
        EXPECT_EQ(*std::ranges::min_element(curve), curve.front());
        EXPECT_NEAR(curve.back(), curve.front(), 6);
    }
}

}  // namespace
