#include "tests/app/ScreenFixture.h"

namespace orvalo::testing {

namespace {

using LayoutTest = ScreenFixture;

TEST_F(LayoutTest, NamesOnlyExistingMembers) {
    EXPECT_EQ(layout()->problems(), Lines{});
}

TEST_F(LayoutTest, StartsWithTheMainScreen) {
    EXPECT_NE(
        std::dynamic_pointer_cast<ViewController>(layout()->instantiateInitialViewController()),
        nullptr);
}

TEST_F(LayoutTest, HasSeguesToBothPages) {
    const auto storyboard = layout();
    for (const auto* identifier : {"ShowHelp", "ShowInfo"}) {
        const auto* segue = storyboard->segue("ViewController", identifier);
        ASSERT_NE(segue, nullptr) << identifier;
        EXPECT_EQ(segue->destination, "HelpViewController");
    }
    EXPECT_EQ(storyboard->segue("ViewController", "ShowInfo")->trigger, "buttonInfo");
    EXPECT_EQ(storyboard->segue("ViewController", "ShowHelp")->trigger, "");
}

TEST_F(LayoutTest, ConnectsEveryOutlet) {
    const auto main = showMainScreen();
    EXPECT_TRUE(main->pluginView.isConnected());
    for (const auto* button : {&main->buttonUnit, &main->buttonInfo, &main->buttonHelp,
                               &main->playButton, &main->stopButton}) {
        EXPECT_TRUE(button->isConnected());
    }
    const auto help = std::dynamic_pointer_cast<HelpViewController>(
        layout()->instantiateViewController("HelpViewController"));
    help->view();
    EXPECT_TRUE(help->webView_.isConnected());
    EXPECT_TRUE(help->buttonExit.isConnected());
}

TEST_F(LayoutTest, AnUnconnectedOutletEndsTheProgram) {
    const auto screen = std::make_shared<ViewController>(std::nullopt, nullptr);
    EXPECT_DEATH(screen->onButtonUnit(nullptr),
                 "Fatal error: The outlet ViewController.pluginView is not connected.");
}

}  // namespace

}  // namespace orvalo::testing
