#include <algorithm>

#include "tests/app/ApplicationFixture.h"

namespace orvalo::testing {

namespace {

using PlayTest = ApplicationFixture;

TEST_F(PlayTest, TheButtonsSwapWithThePlayersState) {
    start();
    ASSERT_TRUE(tree.press("Play"));
    const auto started = program->readUntil("AUEnginePlayer: Audio engine starting.");
    EXPECT_EQ(started.back(), "AUEnginePlayer: Audio engine starting.");
    ASSERT_TRUE(eventually([this] { return tree.shows("Stop") && !tree.shows("Play"); }));
    ASSERT_TRUE(tree.press("Stop"));
    EXPECT_EQ(program->readUntil("AUEnginePlayer: Audio engine stopping.").back(),
              "AUEnginePlayer: Audio engine stopping.");
    ASSERT_TRUE(eventually([this] { return tree.shows("Play") && !tree.shows("Stop"); }));
    EXPECT_EQ(quit(), 0);
}

TEST_F(PlayTest, TheSpaceBarPlaysAndStops) {
    start();
    for (int round = 0; round < 3; ++round) {
        key("space");
        ASSERT_EQ(program->readUntil("AUEnginePlayer: Audio engine starting.").back(),
                  "AUEnginePlayer: Audio engine starting.");
        ASSERT_TRUE(eventually([this] { return tree.shows("Stop"); }));
        key("space");
        ASSERT_EQ(program->readUntil("AUEnginePlayer: Audio engine stopping.").back(),
                  "AUEnginePlayer: Audio engine stopping.");
        ASSERT_TRUE(eventually([this] { return tree.shows("Play"); }));
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
    // The effect hears something: it sends a note when it reduces the gain.
    const auto later = program->readUntil("AUEnginePlayer: MIDI event from audio unit at: ");
    EXPECT_TRUE(later.back().starts_with("AUEnginePlayer: MIDI event from audio unit at: "));
    EXPECT_EQ(quit(), 0);
}

}  // namespace

}  // namespace orvalo::testing
