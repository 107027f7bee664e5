#include <adwaita.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "platform/foundation/RunLoop.h"
#include "platform/ui/UIAlertController.h"
#include "tests/platform/ui/PresenterFixture.h"

namespace orvalo::testing {
namespace {

class Alert : public PresenterFixture {
  protected:
    /// An action that records its title and checks the conditions of its handler.
    std::shared_ptr<UIAlertAction> answer(const std::string& title, UIAlertActionStyle style) {
        return std::make_shared<UIAlertAction>(
            title, style, [this, title, style](const std::shared_ptr<UIAlertAction>& action) {
                EXPECT_EQ(action->title(), title);
                EXPECT_EQ(action->style(), style);
                EXPECT_TRUE(RunLoop::isMainThread());
                EXPECT_EQ(dialogWindow(), nullptr);
                EXPECT_EQ(screen->presentedViewController(), nullptr);
                answers.push_back(title);
            });
    }

    static std::shared_ptr<UIAlertController> alert(
        const std::vector<std::shared_ptr<UIAlertAction>>& actions) {
        auto made = std::make_shared<UIAlertController>("Really?", "It takes a while.",
                                                        UIAlertControllerStyle::alert);
        for (const auto& action : actions) {
            made->addAction(action);
        }
        return made;
    }

    std::shared_ptr<UIAlertController> question() {
        return alert({answer("OK", UIAlertActionStyle::default_),
                      answer("Cancel", UIAlertActionStyle::cancel)});
    }

    bool waitForAnswer() {
        return waitUntil([this] { return !answers.empty(); });
    }

    std::vector<std::string> answers;
};

using Answers = std::vector<std::string>;

TEST_F(Alert, KeepsItsArguments) {
    const auto made = question();
    EXPECT_EQ(made->title(), "Really?");
    EXPECT_EQ(made->message(), "It takes a while.");
    EXPECT_EQ(made->preferredStyle(), UIAlertControllerStyle::alert);
    ASSERT_EQ(made->actions().size(), 2U);
    EXPECT_EQ(made->actions()[0]->title(), "OK");
    EXPECT_EQ(made->actions()[1]->title(), "Cancel");
}

TEST_F(Alert, IsModalForThePresentersWindow) {
    show(question());
    EXPECT_TRUE(gtk_window_get_modal(dialogWindow()));
    EXPECT_EQ(gtk_window_get_transient_for(dialogWindow()), GTK_WINDOW(window->widget()));
    act({"key", "Escape"});
    EXPECT_TRUE(waitForAnswer());
}

TEST_F(Alert, ReturnPerformsTheOnlyDefaultAction) {
    show(question());
    act({"key", "Return"});
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(answers, Answers{"OK"});
}

TEST_F(Alert, EscapePerformsTheCancelAction) {
    show(question());
    act({"key", "Escape"});
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(answers, Answers{"Cancel"});
}

TEST_F(Alert, ClosingPerformsTheCancelAction) {
    show(question());
    act({"key", "alt+F4"});
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(answers, Answers{"Cancel"});
}

TEST_F(Alert, ClicksPerformActions) {
    show(question());
    click("OK");
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(answers, Answers{"OK"});
    answers.clear();
    show(question());
    click("Cancel");
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(answers, Answers{"Cancel"});
}

TEST_F(Alert, PerformsOneActionForTwoClicks) {
    show(question());
    act({"key", "Escape", "key", "Escape", "key", "Return"});
    ASSERT_TRUE(waitForAnswer());
    show(question());
    click("OK");
    ASSERT_TRUE(waitUntil([this] { return answers.size() >= 2; }));
    EXPECT_EQ(answers, (Answers{"Cancel", "OK"}));
}

TEST_F(Alert, PutsCancelFirstAndTheOthersInOrder) {
    show(alert({answer("Save", UIAlertActionStyle::default_),
                answer("Cancel", UIAlertActionStyle::cancel),
                answer("Discard", UIAlertActionStyle::destructive)}));
    // Side by side, or stacked with the last button on top.
    const auto cancel = placeOf(button("Cancel"));
    const auto save = placeOf(button("Save"));
    const auto discard = placeOf(button("Discard"));
    EXPECT_TRUE((cancel.x < save.x && save.x < discard.x) ||
                (cancel.y > save.y && save.y > discard.y));
    // The buttons' style classes differ between versions of libadwaita. Responses have the actions'
    // indices as names.
    auto* dialog = ADW_MESSAGE_DIALOG(dialogWindow());
    EXPECT_EQ(adw_message_dialog_get_response_appearance(dialog, "0"), ADW_RESPONSE_SUGGESTED);
    EXPECT_EQ(adw_message_dialog_get_response_appearance(dialog, "1"), ADW_RESPONSE_DEFAULT);
    EXPECT_EQ(adw_message_dialog_get_response_appearance(dialog, "2"), ADW_RESPONSE_DESTRUCTIVE);
    click("Discard");
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(answers, Answers{"Discard"});
}

TEST_F(Alert, StaysOpenWithoutACancelAction) {
    show(alert({answer("OK", UIAlertActionStyle::default_)}));
    act({"key", "Escape", "key", "alt+F4", "key", "Return"});
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(answers, Answers{"OK"});
}

TEST_F(Alert, ClosesWithoutActions) {
    show(alert({}));
    act({"key", "Escape"});
    EXPECT_TRUE(waitUntil([this] { return !screen->presentedViewController(); }));
    EXPECT_EQ(dialogWindow(), nullptr);
}

TEST_F(Alert, ShowsUnderscores) {
    show(alert({answer("a_b__c", UIAlertActionStyle::default_)}));
    click("a_b__c");
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(answers, Answers{"a_b__c"});
}

TEST_F(Alert, NeedsNoHandler) {
    show(alert({std::make_shared<UIAlertAction>("OK", UIAlertActionStyle::default_, nullptr)}));
    act({"key", "Return"});
    EXPECT_TRUE(waitUntil([this] { return !screen->presentedViewController(); }));
}

TEST_F(Alert, NeedsNoTexts) {
    const auto bare = std::make_shared<UIAlertController>(std::nullopt, std::nullopt,
                                                          UIAlertControllerStyle::actionSheet);
    bare->addAction(answer("OK", UIAlertActionStyle::default_));
    show(bare);
    act({"key", "Return"});
    EXPECT_TRUE(waitForAnswer());
}

TEST_F(Alert, PerformsNoActionWhenDismissed) {
    show(question());
    bool isGone = false;
    screen->dismiss(true, [&isGone] { isGone = true; });
    EXPECT_TRUE(waitUntil([&isGone] { return isGone; }));
    EXPECT_EQ(dialogWindow(), nullptr);
    EXPECT_EQ(screen->presentedViewController(), nullptr);
    EXPECT_EQ(answers, Answers{});
}

TEST_F(Alert, CallsTheCompletionWhenShown) {
    bool isShown = false;
    screen->present(question(), true, [&isShown] { isShown = true; });
    EXPECT_TRUE(waitUntil([&] { return isShown && dialogWindow() != nullptr; }));
    screen->dismiss(false, nullptr);
}

TEST_F(Alert, IsDestroyedAfterAnAction) {
    std::weak_ptr<UIAlertController> left;
    {
        const auto made = question();
        left = made;
        show(made);
    }
    EXPECT_FALSE(left.expired());
    act({"key", "Return"});
    ASSERT_TRUE(waitForAnswer());
    EXPECT_TRUE(left.expired());
}

TEST_F(Alert, CanBePresentedFromAnAction) {
    const auto second = question();
    show(alert({std::make_shared<UIAlertAction>(
        "More", UIAlertActionStyle::default_,
        [&](const std::shared_ptr<UIAlertAction>&) { screen->present(second, true, nullptr); })}));
    act({"key", "Return"});
    ASSERT_TRUE(waitUntil([&] {
        return screen->presentedViewController() == second && dialogWindow() != nullptr &&
               gtk_window_is_active(dialogWindow()) != FALSE;
    }));
    act({"key", "Escape"});
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(answers, Answers{"Cancel"});
}

TEST(AlertDeathTest, HasOneCancelActionAtMost) {
    const auto addTwo = [] {
        UIAlertController alert("a", "b", UIAlertControllerStyle::alert);
        for (const auto* title : {"Cancel", "Leave"}) {
            alert.addAction(
                std::make_shared<UIAlertAction>(title, UIAlertActionStyle::cancel, nullptr));
        }
    };
    EXPECT_EXIT(addTwo(), ::testing::KilledBySignal(SIGABRT),
                "Fatal error: An alert has one cancel action at most; \"Leave\" would be the "
                "second\\.");
}

TEST(AlertDeathTest, IsForTheMainThread) {
    EXPECT_EXIT(std::thread([] {
                    const UIAlertController alert("a", "b", UIAlertControllerStyle::alert);
                }).join(),
                ::testing::KilledBySignal(SIGABRT), "Fatal error: .*UIViewController");
}

}  // namespace
}  // namespace orvalo::testing
