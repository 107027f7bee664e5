#include <algorithm>

#include "tests/app/HelpPageFixture.h"
#include "tests/testing/Desktop.h"

namespace orvalo::testing {

namespace {

using HelpPageTest = HelpPageFixture;

TEST_F(HelpPageTest, IsTheHelpUnlessItWasPreparedForSomethingElse) {
    const CapturedOutput output;
    present();
    EXPECT_TRUE(waitForTitle("Help"));
    EXPECT_EQ(requested(), Lines{"/DYNAMICS/"});
    EXPECT_EQ(output.lines(), linesOf("/DYNAMICS/"));
}

TEST_F(HelpPageTest, IsLoadedAgainEveryTimeTheScreenAppears) {
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

TEST_F(HelpPageTest, PreparedForNeitherPageTheScreenLoadsNone) {
    screen->prepareInfo("Elsewhere");
    const CapturedOutput output;
    present();
    serveMainQueue();
    EXPECT_EQ(output.lines(), Lines{});
    // Whatever had been asked for before would have been first.
    screen->loadHelpPdf();
    EXPECT_TRUE(waitForTitle("Help"));
    EXPECT_EQ(requested(), Lines{"/DYNAMICS/"});
    EXPECT_EQ(output.lines(), linesOf("/DYNAMICS/"));
}

TEST_F(HelpPageTest, AScriptsClickOnALinkToANewWindowIsPrintedAndOpensNothing) {
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
    // By whose end whatever was asked for before has been.
    screen->loadHelpPdf();
    EXPECT_TRUE(waitForTitle("Help"));
    EXPECT_EQ(requested(), (Lines{"/", "/DYNAMICS/"}));
}

}  // namespace

}  // namespace orvalo::testing
