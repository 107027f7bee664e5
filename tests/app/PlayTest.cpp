#include <algorithm>

#include "tests/app/ApplicationFixture.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

using PlayTest = ApplicationFixture;

TEST_F(PlayTest, TheButtonsSwapWithThePlayersState) {
    start();
    ASSERT_TRUE(tree.press("Play"));
    EXPECT_EQ(lineWith("AUEnginePlayer: Audio engine starting."),
              "AUEnginePlayer: Audio engine starting.");
    ASSERT_TRUE(pollUntil([this] { return tree.shows("Stop") && !tree.shows("Play"); }));
    ASSERT_TRUE(tree.press("Stop"));
    EXPECT_EQ(lineWith("AUEnginePlayer: Audio engine stopping."),
              "AUEnginePlayer: Audio engine stopping.");
    ASSERT_TRUE(pollUntil([this] { return tree.shows("Play") && !tree.shows("Stop"); }));
    EXPECT_EQ(quit(), 0);
}

TEST_F(PlayTest, TheSpaceBarPlaysAndStops) {
    start();
    for (int round = 0; round < 3; ++round) {
        key("space");
        ASSERT_EQ(lineWith("AUEnginePlayer: Audio engine starting."),
                  "AUEnginePlayer: Audio engine starting.");
        ASSERT_TRUE(pollUntil([this] { return tree.shows("Stop"); }));
        key("space");
        ASSERT_EQ(lineWith("AUEnginePlayer: Audio engine stopping."),
                  "AUEnginePlayer: Audio engine stopping.");
        ASSERT_TRUE(pollUntil([this] { return tree.shows("Play"); }));
    }
    EXPECT_EQ(quit(), 0);
}

TEST_F(PlayTest, ADemonstrationIsHeardThroughTheEffect) {
    start();
    key("space");
    const auto lines = program->readUntil("AUEnginePlayer: Audio engine starting.");
    EXPECT_EQ(std::count(lines.begin(), lines.end(),
                         "AUEnginePlayer: Audio unit re-connecting to the player."),
              1);
    // The effect gets sound: it sends a note when it reduces the gain.
    EXPECT_TRUE(lineWith("AUEnginePlayer: MIDI event from audio unit at: ")
                    .starts_with("AUEnginePlayer: MIDI event from audio unit at: "));
    EXPECT_EQ(quit(), 0);
}

}  // namespace

}  // namespace orvalo::testing
