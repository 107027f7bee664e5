#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/app/ApplicationFixture.h"
#include "tests/app/Screenshot.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::Value;

/// An effect without its own UI: the stage has one from its ports, whose controls are set by
/// the keyboard.
class RestorationTest : public ApplicationFixture {
  protected:
    RestorationTest() { environment["LV2_PATH"] = ORVALO_MANY_CONTROLS "/few"; }

    bool shows(const std::string& text) const { return Value(tree.names(), Contains(text)); }
    bool waitFor(const std::string& text) const {
        return pollUntil([this, &text] { return shows(text); });
    }
    void startAndShow() {
        start();
        key("ctrl+e");
        EXPECT_TRUE(waitFor("Many <Controls>"));
    }
    /// From the first control, which lists the presets, to another one.
    static void tabTo(int control) {
        for (int tab = 0; tab <= control; ++tab) {
            key("Tab");
        }
    }
    std::filesystem::path state() const { return folder.path() / "state/orvalo/effect.ini"; }
    std::string saved() const {
        std::ifstream file(state());
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void write(const std::string& text) const {
        std::filesystem::create_directories(state().parent_path());
        std::ofstream(state()) << text;
    }

    static constexpr int kLevel = 1;
};

TEST_F(RestorationTest, AUIOfThePortsShowsEachKind) {
    startAndShow();
    for (const auto* text :
         {"Preset", "Choose…", "Level", "-20.0 dB", "On & off", "Wave", "Square", "Steps", "4",
          "Tone", "Cutoff", "200 Hz", "Width", "50.0 steps", "Meters", "Meter"}) {
        EXPECT_TRUE(waitFor(text)) << text;
    }
    EXPECT_FALSE(shows("Hidden"));
    EXPECT_EQ(windowsNamed("^Orvalo – Many <Controls>$").size(), 1);
    EXPECT_FALSE(shows("Latency"));
    EXPECT_EQ(quit(), 0);
    EXPECT_THAT(program->standardError(),
                HasSubstr("The UI of <urn:orvalo:test:few> cannot be shown: the plug-in "
                          "has none.\n"));
}

TEST_F(RestorationTest, BesideAUIOfThePortsTheStageIsAsTheDesktop) {
    environment["ADW_DEBUG_COLOR_SCHEME"] = "prefer-light";
    environment["ADW_DISABLE_PORTAL"] = "1";
    start();
    resize(1100, 500);
    key("ctrl+e");
    EXPECT_TRUE(waitFor("Many <Controls>"));
    const auto window = place();
    EXPECT_TRUE(pollUntil([&window] {
        const Screenshot shot;
        const auto color = shot.at(window.x, window.y);
        // Of libadwaita 1.2 and 1.7.
        return (color == 0xFAFAFA || color == 0xFAFAFB) &&
               shot.count(color, window.x, window.y, 100, 400) == 100 * 400 &&
               shot.count(color, window.x + window.width - 100, window.y, 100, 400) == 100 * 400;
    }));
    EXPECT_EQ(quit(), 0);
}

TEST_F(RestorationTest, TheKeyboardSetsValuesAndTheMeterFollows) {
    startAndShow();
    key("space");
    EXPECT_EQ(lineWith("Audio engine starting."), "AUEnginePlayer: Audio engine starting.");
    tabTo(kLevel);
    key("Right");
    EXPECT_TRUE(waitFor("-19.6 dB"));
    key("Page_Up");
    // Of the control and of the meter, which the effect writes.
    EXPECT_TRUE(pollUntil([this] { return std::ranges::count(tree.names(), "-15.6 dB") == 2; }));
    tabTo(0);
    // The switch takes the space bar, so the music does not stop.
    key("space");
    // The toolkit moves the switch before it sets it.
    EXPECT_TRUE(pollUntil([this] { return tree.isOn("On & off"); }));
    EXPECT_EQ(quit(), 0);
    EXPECT_THAT(program->readAll(), Not(Contains("AUEnginePlayer: Audio engine stopping.")));
    EXPECT_THAT(saved(), HasSubstr("\nlevel=-15.6"));
    EXPECT_THAT(saved(), HasSubstr("\non=1\n"));
}

TEST_F(RestorationTest, AUIOfManyPortsScrolls) {
    environment["LV2_PATH"] = ORVALO_MANY_CONTROLS "/many";
    startAndShow();
    EXPECT_TRUE(shows("More 259"));
    // Backwards from the first control: the bar's buttons, then the last control, in the last
    // group.
    tabTo(0);
    for (int tab = 0; tab < 5; ++tab) {
        key("shift+Tab");
    }
    key("Right");
    EXPECT_EQ(quit(), 0);
    EXPECT_THAT(saved(), HasSubstr("\ncutoff=214.3"));
}

TEST_F(RestorationTest, APresetIsLoadedByTheList) {
    startAndShow();
    tabTo(0);
    key("Return");
    key("Down");
    key("Return");
    EXPECT_TRUE(waitFor("-4.0 dB"));
    EXPECT_TRUE(waitFor("9"));
    EXPECT_EQ(quit(), 0);
}

TEST_F(RestorationTest, TheEffectStartsAsItWasAtTheEnd) {
    for (const bool isSignal : {false, true}) {
        startAndShow();
        EXPECT_TRUE(waitFor(isSignal ? "-19.6 dB" : "-20.0 dB"));
        tabTo(kLevel);
        key("Right");
        EXPECT_TRUE(waitFor(isSignal ? "-19.2 dB" : "-19.6 dB"));
        if (isSignal) {
            program->signal(SIGTERM);
            EXPECT_EQ(program->wait(), -SIGTERM);
        } else {
            EXPECT_EQ(quit(), 0);
        }
    }
    startAndShow();
    EXPECT_TRUE(waitFor("-19.2 dB"));
    EXPECT_EQ(quit(), 0);
}

TEST_F(RestorationTest, AnUnreadableStateGivesALineAndTheDefault) {
    for (const auto* text : {"\1\2\3", "[Controls]\nlevel=-3\n",
                             "[Effect]\nURI=urn:orvalo:test:few\n[Controls]\nlevel=loud\n"}) {
        write(text);
        startAndShow();
        EXPECT_TRUE(waitFor("-20.0 dB")) << text;
        EXPECT_EQ(quit(), 0);
        EXPECT_THAT(program->standardError(), HasSubstr(state().string())) << text;
        EXPECT_THAT(program->standardError(), HasSubstr("the effect starts with its default"));
    }
}

TEST_F(RestorationTest, AFolderThatCannotBeMadeIsNamed) {
    const auto inItsPlace = state().parent_path().parent_path();
    std::ofstream(inItsPlace) << "a file";
    startAndShow();
    EXPECT_EQ(quit(), 0);
    EXPECT_THAT(program->standardError(),
                HasSubstr("The effect's state is not saved: " + state().parent_path().string() +
                          ": Not a directory\n"));
    EXPECT_TRUE(std::filesystem::is_regular_file(inItsPlace));
}

TEST_F(RestorationTest, TheStateOfAnotherEffectAndValuesOutOfRangeAreNotTaken) {
    write("[Effect]\nURI=urn:orvalo:test:other\n[Controls]\nlevel=-3\n");
    startAndShow();
    EXPECT_TRUE(waitFor("-20.0 dB"));
    EXPECT_EQ(quit(), 0);
    EXPECT_THAT(program->standardError(), Not(HasSubstr(state().string())));
    write("[Effect]\nURI=urn:orvalo:test:few\n[Controls]\nlevel=7\nwidth=25\nmeter=1\n");
    startAndShow();
    EXPECT_TRUE(waitFor("25.0 steps"));
    EXPECT_TRUE(waitFor("-20.0 dB"));
    EXPECT_EQ(quit(), 0);
}

TEST_F(RestorationTest, TheWindowHasItsSizeAgain) {
    start();
    resize(777, 555);
    ASSERT_TRUE(pollUntil([] { return place().width == 777 && place().height == 555; }));
    EXPECT_EQ(quit(), 0);
    start();
    EXPECT_TRUE(pollUntil([] { return place().width == 777 && place().height == 555; }));
    EXPECT_EQ(quit(), 0);
}

}  // namespace

}  // namespace orvalo::testing
