#include <gmock/gmock.h>
#include <gtk/gtk.h>

#include <thread>

#include "hosting/AUExtensionManager.h"
#include "platform/audio/engine/AVAudioUnit.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/FileManager.h"
#include "platform/ui/UIStoryboardSegue.h"
#include "tests/app/ScreenFixture.h"
#include "tests/heart/ConstantUnit.h"
#include "tests/kit/Desktop.h"

namespace orvalo::testing {

namespace {

using MainScreenTest = ScreenFixture;

/// An effect that keeps the question for its interface until the test answers it.
class AskedUnit : public ConstantUnit {
  public:
    AskedUnit() : ConstantUnit(0.0F) {}
    void requestViewController(
        std::function<void(std::shared_ptr<UIViewController>)> completion) override {
        answer = std::move(completion);
    }

    std::function<void(std::shared_ptr<UIViewController>)> answer;
};

/// A part of the screen that writes down how it is taken in.
class WitnessController : public UIViewController {
  public:
    WitnessController() : UIViewController(std::nullopt, nullptr) {}
    void didMove(const std::shared_ptr<UIViewController>& toParent) override {
        isInPlace = toParent == parent() && view()->superview() != nullptr &&
                    !view()->translatesAutoresizingMaskIntoConstraints();
        UIViewController::didMove(toParent);
    }

    bool isInPlace = false;
};

TEST_F(MainScreenTest, StartsIdleWithTheEffectHidden) {
    const auto screen = showMainScreen();
    EXPECT_FALSE(screen->playButton->isHidden());
    EXPECT_TRUE(screen->stopButton->isHidden());
    EXPECT_TRUE(screen->pluginView->isHidden());
    EXPECT_EQ(ViewControllerPeer::manager(*screen)->auEngine->delegate, screen);
}

TEST_F(MainScreenTest, FindsItsDirectories) {
    const auto screen = showMainScreen();
    EXPECT_EQ(
        ViewControllerPeer::documentsPath(*screen),
        FileManager::default_()
            .urls(SearchPathDirectory::documentDirectory, SearchPathDomainMask::userDomainMask)
            .front()
            .path());
    EXPECT_EQ(ViewControllerPeer::resourcesPath(*screen), Bundle::main()->resourceURL()->path());
    EXPECT_EQ(ViewControllerPeer::sharedPath(*screen), "");
}

TEST_F(MainScreenTest, SwapsTheButtonsWithThePlayersState) {
    const auto screen = showMainScreen();
    screen->onPlayerStateChanged(true);
    EXPECT_TRUE(screen->playButton->isHidden());
    EXPECT_FALSE(screen->stopButton->isHidden());
    screen->onPlayerStateChanged(false);
    EXPECT_FALSE(screen->playButton->isHidden());
    EXPECT_TRUE(screen->stopButton->isHidden());
}

TEST_F(MainScreenTest, TheUnitButtonTogglesTheEffectsView) {
    const auto screen = showMainScreen();
    screen->onButtonUnit(screen->buttonUnit.get());
    EXPECT_FALSE(screen->pluginView->isHidden());
    screen->onButtonUnit(screen->buttonUnit.get());
    EXPECT_TRUE(screen->pluginView->isHidden());
}

TEST_F(MainScreenTest, AnAbsentUnitIsReported) {
    const auto screen = showMainScreen();
    const CapturedOutput output;
    screen->onFoundComponent(nullptr);
    EXPECT_EQ(output.lines(),
              (Lines{"ViewController: Loading the audio unit's interface...",
                     "ERROR: The audio unit is not initialized to load the user interface."}));
}

TEST_F(MainScreenTest, AnAbsentInterfaceIsReported) {
    const auto screen = showMainScreen();
    const auto unit = std::make_shared<AskedUnit>();
    const CapturedOutput output;
    screen->onFoundComponent(std::make_shared<AVAudioUnit>(unit));
    unit->answer(nullptr);
    EXPECT_EQ(output.lines(),
              (Lines{"ViewController: Loading the audio unit's interface...",
                     "ERROR: Something is wrong with the view controller and view of the audio "
                     "unit."}));
}

TEST_F(MainScreenTest, AScreenThatIsGoneIsReported) {
    auto screen = std::make_shared<ViewController>(std::nullopt, nullptr);
    const auto unit = std::make_shared<AskedUnit>();
    const CapturedOutput output;
    screen->onFoundComponent(std::make_shared<AVAudioUnit>(unit));
    screen.reset();
    unit->answer(std::make_shared<WitnessController>());
    EXPECT_EQ(output.lines(), (Lines{"ViewController: Loading the audio unit's interface...",
                                     "ERROR: Self is nil !?"}));
}

TEST_F(MainScreenTest, EmbedsTheInterfaceInOrderAndLeavesItHidden) {
    const auto screen = showMainScreen();
    const auto before = screen->pluginView->subviews().size();
    const auto unit = std::make_shared<AskedUnit>();
    const auto controller = std::make_shared<WitnessController>();
    screen->onFoundComponent(std::make_shared<AVAudioUnit>(unit));
    unit->answer(controller);
    EXPECT_EQ(controller->parent(), screen);
    EXPECT_TRUE(controller->isInPlace);
    ASSERT_EQ(screen->pluginView->subviews().size(), before + 1);
    EXPECT_EQ(screen->pluginView->subviews().back(), controller->view());
    EXPECT_TRUE(screen->pluginView->isHidden());
    EXPECT_EQ(ViewControllerPeer::effectController(*screen), nullptr);
    screen->onButtonUnit(nullptr);
    EXPECT_TRUE(waitUntil([&] {
        return controller->view()->bounds() == screen->pluginView->bounds() &&
               screen->pluginView->bounds().size.width > 100;
    }));
}

TEST_F(MainScreenTest, WithoutAManagerAPressEndsTheProgram) {
    const auto screen = std::make_shared<ViewController>(std::nullopt, nullptr);
    EXPECT_DEATH(screen->onPlayButton(nullptr),
                 "Fatal error: Unexpectedly found nil while unwrapping an Optional value");
    EXPECT_DEATH(screen->onStopButton(nullptr),
                 "Fatal error: Unexpectedly found nil while unwrapping an Optional value");
}

std::shared_ptr<UIStoryboardSegue> segue(std::optional<std::string> identifier,
                                         std::shared_ptr<UIViewController> destination) {
    return std::make_shared<UIStoryboardSegue>(std::move(identifier), nullptr,
                                               std::move(destination));
}

TEST_F(MainScreenTest, ASegueTellsThePageWhatItIsFor) {
    const auto screen = std::make_shared<ViewController>(std::nullopt, nullptr);
    const auto page = std::make_shared<HelpViewController>(std::nullopt, nullptr);
    EXPECT_EQ(HelpViewControllerPeer::identifier(*page), "ShowHelp");
    const CapturedOutput output;
    screen->prepare(segue("ShowInfo", page), screen);
    EXPECT_EQ(HelpViewControllerPeer::identifier(*page), "ShowInfo");
    screen->prepare(segue("ShowHelp", page), screen);
    EXPECT_EQ(HelpViewControllerPeer::identifier(*page), "ShowHelp");
    screen->prepare(segue("Elsewhere", screen), screen);
    screen->prepare(segue(std::nullopt, screen), screen);
    EXPECT_EQ(output.lines(), (Lines{"ShowInfo", "ShowHelp", "Elsewhere"}));
}

TEST_F(MainScreenTest, ASegueToAnotherScreenEndsTheProgram) {
    const auto screen = std::make_shared<ViewController>(std::nullopt, nullptr);
    EXPECT_DEATH(screen->prepare(segue("ShowInfo", screen), screen),
                 "Fatal error: The segue \"ShowInfo\" does not lead to a HelpViewController.");
}

TEST_F(MainScreenTest, ItsActionsCanBePerformedAndOthersCannot) {
    const auto screen = showMainScreen();
    EXPECT_TRUE(screen->canPerformAction("onPlayButton", nullptr));
    EXPECT_FALSE(screen->canPerformAction("copy", nullptr));
}

TEST_F(MainScreenTest, AnAlertPrintsItsTextAndTheAnswer) {
    const auto screen = showMainScreen();
    ASSERT_TRUE(
        waitUntil([this] { return gtk_window_is_active(GTK_WINDOW(window->widget())) != FALSE; }));
    const CapturedOutput output;
    screen->alertMessage("Title", "Message");
    const auto leaves = [this](const std::string& key) {
        EXPECT_TRUE(waitUntil(
            [this] { return gtk_window_is_active(GTK_WINDOW(window->widget())) == FALSE; }));
        act({"key", key});
    };
    leaves("Escape");
    ASSERT_TRUE(waitUntil([&output] { return output.lines().size() == 2; }));
    EXPECT_EQ(output.lines(), (Lines{"Title: Message", "Alert was canceled."}));
}

}  // namespace

}  // namespace orvalo::testing
