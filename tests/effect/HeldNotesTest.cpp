#include "effect/dsp/HeldNotes.h"

#include <gtest/gtest.h>

namespace {

using orvalo::effect::HeldNotes;

TEST(HeldNotes, ReportsTheHighestVelocity) {
    HeldNotes notes;
    EXPECT_EQ(notes.loudest(), 0);
    notes.press(0, 60, 50);
    notes.press(1, 60, 90);
    notes.press(0, 64, 70);
    EXPECT_EQ(notes.loudest(), 90);
    notes.release(1, 60);
    EXPECT_EQ(notes.loudest(), 70);
    notes.release(0, 64);
    EXPECT_EQ(notes.loudest(), 50);
    notes.release(0, 60);
    EXPECT_EQ(notes.loudest(), 0);
}

TEST(HeldNotes, RepeatedNoteTakesTheNewVelocity) {
    HeldNotes notes;
    notes.press(0, 60, 100);
    notes.press(0, 60, 30);
    EXPECT_EQ(notes.loudest(), 30);
    notes.release(0, 60);
    EXPECT_EQ(notes.loudest(), 0);
}

TEST(HeldNotes, CountsNotesOfEqualVelocitySeparately) {
    HeldNotes notes;
    notes.press(0, 60, 80);
    notes.press(0, 61, 80);
    notes.release(0, 60);
    EXPECT_EQ(notes.loudest(), 80);
}

TEST(HeldNotes, ReleasesChannelsSeparately) {
    HeldNotes notes;
    notes.press(3, 1, 20);
    notes.press(4, 2, 40);
    notes.press(15, 127, 127);
    notes.releaseChannel(15);
    EXPECT_EQ(notes.loudest(), 40);
    notes.releaseAllBut(3);
    EXPECT_EQ(notes.loudest(), 20);
    notes.releaseAll();
    EXPECT_EQ(notes.loudest(), 0);
}

TEST(HeldNotes, ReleasingANoteThatIsNotHeldChangesNothing) {
    HeldNotes notes;
    notes.press(0, 60, 80);
    notes.release(0, 61);
    notes.release(1, 60);
    EXPECT_EQ(notes.loudest(), 80);
}

}  // namespace
