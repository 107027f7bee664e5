#include <gmock/gmock.h>
#include <gtk/gtk.h>

#include <algorithm>

#include "hosting/AUExtensionManager.h"
#include "platform/audio/engine/AVAudioUnit.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/FileManager.h"
#include "platform/plugin-ui/view/AUViewController.h"
#include "platform/ui/NSLayoutConstraint.h"
#include "platform/ui/UIAlertController.h"
#include "platform/ui/UIStoryboardSegue.h"
#include "tests/Audio Engine/ConstantUnit.h"
#include "tests/app/ScreenFixture.h"
#include "tests/testing/Desktop.h"

namespace orvalo::testing {

namespace {

using ::testing::Contains;
using MainScreenTest = ScreenFixture;

/// An effect that keeps the request for its UI until the test answers.
class AskedUnit : public ConstantUnit {
  public:
    AskedUnit() : ConstantUnit(0.0F) {}
    void requestViewController(
        std::function<void(std::shared_ptr<UIViewController>)> completion) override {
        answer = std::move(completion);
    }

    std::function<void(std::shared_ptr<UIViewController>)> answer;
};

/// A child controller that records its calls.
class WitnessController : public AUViewController {
  public:
    WitnessController() : AUViewController(std::nullopt, nullptr) {}
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

TEST_F(MainScreenTest, APressTogglesPlaybackAndTheDelegateSwapsTheButtons) {
    const auto screen = showMainScreen();
    const auto reportTurns = [&screen](bool playing) {
        EXPECT_EQ(screen->playButton->isHidden(), !playing);
        EXPECT_EQ(screen->stopButton->isHidden(), playing);
        serveMainQueue();
        EXPECT_EQ(screen->playButton->isHidden(), playing);
        EXPECT_EQ(screen->stopButton->isHidden(), !playing);
    };
    screen->onPlayButton(screen->playButton.get());
    reportTurns(true);
    screen->onStopButton(screen->stopButton.get());
    reportTurns(false);
}

TEST_F(MainScreenTest, EitherButtonStartsAndStops) {
    const auto screen = showMainScreen();
    const CapturedOutput output;
    screen->onStopButton(screen->stopButton.get());
    serveMainQueue();
    EXPECT_THAT(output.lines(), Contains("AUEnginePlayer: Audio engine starting."));
    EXPECT_TRUE(screen->playButton->isHidden());
    screen->onPlayButton(screen->playButton.get());
    serveMainQueue();
    EXPECT_THAT(output.lines(), Contains("AUEnginePlayer: Audio engine stopping."));
    EXPECT_TRUE(screen->stopButton->isHidden());
}

TEST_F(MainScreenTest, FilesAndPassesPrintNothing) {
    const auto screen = showMainScreen();
    const CapturedOutput output;
    screen->onFileSelect("/music/1.m4a");
    screen->onLoop(0);
    screen->onEngineInitialized();
    EXPECT_EQ(output.lines(), Lines{});
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

TEST_F(MainScreenTest, AnAbsentPluginUIIsReported) {
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

TEST_F(MainScreenTest, ADestroyedScreenIsReported) {
    auto screen = std::make_shared<ViewController>(std::nullopt, nullptr);
    const auto unit = std::make_shared<AskedUnit>();
    const CapturedOutput output;
    screen->onFoundComponent(std::make_shared<AVAudioUnit>(unit));
    screen.reset();
    unit->answer(std::make_shared<WitnessController>());
    EXPECT_EQ(output.lines(), (Lines{"ViewController: Loading the audio unit's interface...",
                                     "ERROR: Self is nil !?"}));
}

TEST_F(MainScreenTest, EmbedsThePluginUIInOrderAndLeavesItHidden) {
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

TEST_F(MainScreenTest, EmbedsThePluginUIOfTheManager) {
    const auto screen = showMainScreen();
    const auto before = screen->pluginView->subviews().size();
    const auto controller = std::make_shared<WitnessController>();
    ViewControllerPeer::manager(*screen)->viewController = controller;
    const CapturedOutput output;
    ViewControllerPeer::embedPlugInView(*screen);
    EXPECT_EQ(controller->parent(), screen);
    EXPECT_TRUE(controller->isInPlace);
    EXPECT_EQ(controller->view()->superview(), screen->pluginView.get());
    EXPECT_EQ(screen->pluginView->subviews().size(), before + 1);
    const auto& constraints = screen->pluginView->constraints();
    EXPECT_EQ(std::count_if(constraints.begin(), constraints.end(),
                            [&controller](const auto& constraint) {
                                return constraint->firstAnchor().view() == controller->view();
                            }),
              4);
    EXPECT_EQ(output.lines(), Lines{});
    EXPECT_EQ(ViewControllerPeer::effectController(*screen), nullptr);
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

TEST_F(MainScreenTest, ASegueSetsThePage) {
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
    for (const auto& [key, answer] : {std::pair{"Return", "Alert was confirmed."},
                                      std::pair{"Escape", "Alert was canceled."}}) {
        waitForKeyboard(true);
        const CapturedOutput output;
        screen->alertMessage("Title", "Message");
        const auto alert =
            std::dynamic_pointer_cast<UIAlertController>(screen->presentedViewController());
        ASSERT_NE(alert, nullptr);
        EXPECT_EQ(alert->title(), "Title");
        EXPECT_EQ(alert->message(), "Message");
        EXPECT_EQ(alert->preferredStyle(), UIAlertControllerStyle::alert);
        ASSERT_EQ(alert->actions().size(), 2U);
        EXPECT_EQ(alert->actions()[0]->title(), "OK");
        EXPECT_EQ(alert->actions()[0]->style(), UIAlertActionStyle::default_);
        EXPECT_EQ(alert->actions()[1]->title(), "Cancel");
        EXPECT_EQ(alert->actions()[1]->style(), UIAlertActionStyle::cancel);
        waitForKeyboard(false);
        act({"key", key});
        ASSERT_TRUE(waitUntil([&output] { return output.lines().size() == 2; }));
        EXPECT_EQ(output.lines(), (Lines{"Title: Message", answer}));
    }
}

}  // namespace

}  // namespace orvalo::testing
