#include <glib.h>
#include <gmock/gmock.h>

#include <algorithm>

#include "tests/app/ApplicationFixture.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

using ::testing::HasSubstr;
using StartTest = ApplicationFixture;

/// The lines that `wanted` contains, in order.
Lines among(const Lines& lines, const Lines& wanted) {
    Lines result;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(result), [&](const auto& line) {
        return std::find(wanted.begin(), wanted.end(), line) != wanted.end();
    });
    return result;
}

TEST_F(StartTest, PrintsItsTranscript) {
    const auto lines = start();
    const std::string home = g_getenv("HOME");
    const Lines onMain{
        "Info: Main view controller loaded.",
        "NOTE: WE ARE IN AUDIO UNIT RELEASE MODE. ENSURE THE STORYBOARD CONNECTIONS ARE VALID!",
        std::string("ViewController: The app's documents path is: ") + home,
        "ViewController: The app's resources path is: " ORVALO_TEST_STAGE "/share/orvalo"};
    // The search prints on another thread.
    const Lines onSearch{
        "AUExtensionManager: Loaded component has following properties.",
        "AUExtension (",
        "type: aumf",
        "subtype: orVL",
        "manufacturer: TSLY",
        "flags: 0x00000002",
        ")",
        "AUExtensionManager: Audio unit was found, making connections now ...",
        "AUEnginePlayer: A new audio unit will be connected.",
        "AUEnginePlayer: The audio unit reports MIDI output names. Assigning a handling block.",
        "AUEnginePlayer: Audio unit was attached.",
        std::string("AUEnginePlayer::ERROR: There was a problem with the file processing format or "
                    "the file is nil (yet)."),
        "AUExtensionManager: Performed audio unit connection.",
        "ViewController: Loading the audio unit's interface...",
        "WARNING: Audio unit is nil (yet?)."};
    EXPECT_EQ(among(lines, onMain), onMain);
    EXPECT_EQ(among(lines, onSearch), onSearch);
    EXPECT_EQ(lines.front(), onMain.front());
    // Three more lines: the process name and an empty line on each side of it.
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const auto& line) { return line.starts_with("Process Name: "); }),
              1);
    EXPECT_EQ(lines.size(), onMain.size() + onSearch.size() + 3);
    EXPECT_EQ(quit(), 0);
    EXPECT_EQ(program->readAll(), Lines{});
}

TEST_F(StartTest, ShowsThePlayButtonAndNotTheStopButton) {
    start();
    EXPECT_EQ(tree.buttons(), (Lines{"Effect", "Play", "Information", "Help"}));
    EXPECT_EQ(quit(), 0);
}

TEST_F(StartTest, ASecondStartPresentsTheRunningWindow) {
    start();
    const auto second = startAgain();
    EXPECT_EQ(second->readAll(), Lines{});
    EXPECT_EQ(second->wait(), 0);
    EXPECT_TRUE(pollUntil([] { return windowCount() == 1; }));
    EXPECT_EQ(quit(), 0);
}

TEST_F(StartTest, WithoutADisplayItEndsWithAnError) {
    environment["DISPLAY"] = ":65535";
    environment["WAYLAND_DISPLAY"] = "nowhere";
    const auto alone = startAgain();
    EXPECT_EQ(alone->readAll(), Lines{});
    EXPECT_EQ(alone->wait(), 1);
    EXPECT_THAT(alone->standardError(), HasSubstr("There is no display to show a window on."));
}

TEST_F(StartTest, AnUnknownOptionIsAnErrorThatNamesIt) {
    Program alone({ORVALO_TEST_STAGE "/bin/orvalo-on-loopback", "--x"}, environment);
    EXPECT_EQ(alone.readAll(), Lines{});
    EXPECT_EQ(alone.wait(), 1);
    EXPECT_THAT(alone.standardError(), HasSubstr("--x\n"));
}

TEST_F(StartTest, AFileArgumentIsAnErrorThatNamesIt) {
    Program alone({ORVALO_TEST_STAGE "/bin/orvalo-on-loopback", "a.wav", "b.wav"}, environment);
    EXPECT_EQ(alone.readAll(), Lines{});
    EXPECT_EQ(alone.wait(), 1);
    EXPECT_THAT(alone.standardError(),
                HasSubstr("\"a.wav\" is not opened: the application takes no files.\n"));
}

}  // namespace

}  // namespace orvalo::testing
