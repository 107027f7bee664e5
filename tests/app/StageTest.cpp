#include <algorithm>
#include <filesystem>

#include "tests/app/ApplicationFixture.h"
#include "tests/app/Screenshot.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

namespace fs = std::filesystem;

constexpr auto kNoEffect =
    "No effect was found that works. Install Orvalo again, or register another LV2 effect; the "
    "help says how. Until then music plays without an effect.";

class StageTest : public ApplicationFixture {
  protected:
    bool shows(const std::string& text) const { return std::ranges::count(tree.names(), text) > 0; }

    void installEffect() const {
        fs::create_directory_symlink(fs::path(ORVALO_TEST_STAGE "/lib/lv2"),
                                     installed() / "lib/lv2");
    }
};

TEST_F(StageTest, TheWelcomeTextFollowsThePlayer) {
    start();
    EXPECT_TRUE(
        shows("Press play to hear a demonstration through the effect.\n"
              "The Effect button shows the effect’s own controls here."));
    key("space");
    EXPECT_TRUE(pollUntil([this] {
        return shows(
            "A demonstration plays through the effect.\n"
            "The Effect button shows the effect’s controls: turn them and listen.");
    }));
    key("space");
    EXPECT_TRUE(pollUntil([this] {
        return shows(
            "Press play to hear a demonstration through the effect.\n"
            "The Effect button shows the effect’s own controls here.");
    }));
    EXPECT_EQ(quit(), 0);
}

TEST_F(StageTest, AnEffectThatIsInstalledMeanwhileIsFoundByTheButton) {
    installWithoutEffect();
    program = startAgain();
    EXPECT_EQ(lineWith("ERROR:"), "ERROR: There were no audio units found.");
    EXPECT_TRUE(pollUntil([this] { return tree.shows("Try Again") && shows(kNoEffect); }));
    ASSERT_TRUE(tree.press("Try Again"));
    EXPECT_EQ(lineWith("ERROR:"), "ERROR: There were no audio units found.");
    // The stage of the effect has the same words.
    focus();
    key("ctrl+e");
    EXPECT_TRUE(pollUntil([this] { return tree.shows("Try Again"); }));
    installEffect();
    ASSERT_TRUE(tree.press("Try Again"));
    EXPECT_EQ(lineWith("Loading the audio"),
              "ViewController: Loading the audio unit's interface...");
    EXPECT_TRUE(pollUntil([] { return effectPlace().has_value(); }));
    EXPECT_FALSE(tree.shows("Try Again"));
    EXPECT_FALSE(shows(kNoEffect));
    EXPECT_EQ(quit(), 0);
}

TEST_F(StageTest, BesideTheEffectItIsDark) {
    start();
    // The effect's name is the program's.
    EXPECT_EQ(windowsNamed("^Orvalo$").size(), 1);
    resize(1100, 500);
    key("ctrl+e");
    ASSERT_TRUE(pollUntil([] { return effectPlace().has_value(); }));
    const auto window = place();
    EXPECT_TRUE(pollUntil([&window] {
        const Screenshot shot;
        return shot.count(0x14161A, window.x, window.y, 100, 400) == 100 * 400 &&
               shot.count(0x14161A, window.x + window.width - 100, window.y, 100, 400) == 100 * 400;
    }));
    EXPECT_EQ(quit(), 0);
}

}  // namespace

}  // namespace orvalo::testing
