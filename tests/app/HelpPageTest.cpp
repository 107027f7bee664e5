#include <algorithm>
#include <filesystem>
#include <fstream>

#include "tests/app/HelpPageFixture.h"
#include "tests/testing/Desktop.h"

namespace orvalo::testing {

namespace {

using HelpPageTest = HelpPageFixture;

TEST_F(HelpPageTest, IsTheHelpByDefault) {
    const CapturedOutput output;
    present();
    EXPECT_TRUE(waitForTitle("Help"));
    EXPECT_EQ(requested(), Lines{"/DYNAMICS/"});
    EXPECT_EQ(output.lines(), linesOf("/DYNAMICS/"));
}

TEST_F(HelpPageTest, IsReloadedEveryTimeTheScreenAppears) {
    Lines expected;
    const CapturedOutput output;
    for (int round = 1; round <= 2; ++round) {
        present();
        const auto lines = linesOf("/DYNAMICS/");
        expected.insert(expected.end(), lines.begin(), lines.end());
        ASSERT_TRUE(waitUntil([&] { return output.lines() == expected; })) << output.text();
        EXPECT_TRUE(waitForTitle("Help"));
        EXPECT_EQ(requested(), Lines(static_cast<std::size_t>(round), "/DYNAMICS/"));
        dismiss();
    }
}

/// Whether a timer of this process has a period of so many seconds.
bool hasTimer(int seconds) {
    const auto period = "it_interval: (" + std::to_string(seconds) + ", 0)";
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fdinfo")) {
        std::ifstream info(entry.path());
        for (std::string line; std::getline(info, line);) {
            if (line == period) {
                return true;
            }
        }
    }
    return false;
}

TEST_F(HelpPageTest, ALoadMayStandStillForAMinute) {
    for (const auto* shown : {"ShowHelp", "ShowInfo"}) {
        screen->prepareInfo(shown);
        EXPECT_FALSE(hasTimer(60));
        present();
        EXPECT_TRUE(waitUntil([] { return hasTimer(60); })) << shown;
        EXPECT_TRUE(waitUntil([] { return !hasTimer(60); })) << shown;
        dismiss();
    }
}

TEST_F(HelpPageTest, AnUnknownIdentifierLoadsNoPage) {
    screen->prepareInfo("Elsewhere");
    const CapturedOutput output;
    present();
    serveMainQueue();
    EXPECT_EQ(output.lines(), Lines{});
    // A page that was loaded before would be the first request.
    screen->loadHelpPdf();
    EXPECT_TRUE(waitForTitle("Help"));
    EXPECT_EQ(requested(), Lines{"/DYNAMICS/"});
    EXPECT_EQ(output.lines(), linesOf("/DYNAMICS/"));
}

TEST_F(HelpPageTest, AScriptedClickOnALinkToANewWindowOpensNothing) {
    screen->prepareInfo("ShowInfo");
    const CapturedOutput output;
    present();
    const auto address = loopbackSite().address("/new");
    const Lines asked{"createWebViewWith:", address};
    ASSERT_TRUE(waitUntil([&] {
        const auto lines = output.lines();
        return std::search(lines.begin(), lines.end(), asked.begin(), asked.end()) != lines.end();
    })) << output.text();
    EXPECT_TRUE(waitForTitle("Information"));
    // The site has all earlier requests once this page is loaded.
    screen->loadHelpPdf();
    EXPECT_TRUE(waitForTitle("Help"));
    EXPECT_EQ(requested(), (Lines{"/", "/DYNAMICS/"}));
}

}  // namespace

}  // namespace orvalo::testing
