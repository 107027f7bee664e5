#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "tests/platform/ui/LayoutFixture.h"

namespace orvalo::testing {
namespace {

class Outlet : public LayoutFixture {
  protected:
    std::shared_ptr<FirstScreen> load(const std::string& objects) {
        auto screen = std::dynamic_pointer_cast<FirstScreen>(
            layout(objects)->instantiateInitialViewController());
        screen->view();
        return screen;
    }
};

TEST_F(Outlet, IsConnectedWhenTheViewIsLoaded) {
    const auto screen = std::dynamic_pointer_cast<FirstScreen>(
        layout(twoScreens)->instantiateInitialViewController());
    EXPECT_FALSE(screen->box.isConnected());
    screen->view();
    ASSERT_TRUE(screen->box.isConnected());
    ASSERT_TRUE(screen->button.isConnected());
    EXPECT_TRUE(GTK_IS_BUTTON(screen->button->widget()));
    EXPECT_EQ(screen->button.get(), UIView::of(screen->button->widget()));
    EXPECT_EQ(screen->box->superview(), screen->view());
    EXPECT_EQ(events(), std::vector<std::string>{"FirstScreen viewDidLoad"});
}

TEST_F(Outlet, SendsActionsWithTheirSender) {
    const auto screen = load(R"(
<object class="UIView" id="FirstScreen"><child><object class="GtkButton" id="button">
  <signal name="clicked" handler="press"/><signal name="clicked" handler="pressButton"/>
</object></child></object>)");
    click(*screen->button.get());
    EXPECT_EQ(events(), (std::vector<std::string>{"FirstScreen viewDidLoad", "FirstScreen press",
                                                  "FirstScreen pressButton"}));
    EXPECT_EQ(screen->senders, (std::vector<std::shared_ptr<NSObject>>(2, screen->button.get())));
}

TEST_F(Outlet, IgnoresAnUnknownAction) {
    const auto screen = load(R"(
<object class="UIView" id="FirstScreen"><child><object class="GtkButton" id="button">
  <signal name="clicked" handler="unknown"/></object></child></object>)");
    click(*screen->button.get());
    EXPECT_TRUE(screen->senders.empty());
}

TEST_F(Outlet, AnswersWhichActionsCanBePerformed) {
    const auto screen = load(twoScreens);
    EXPECT_TRUE(screen->canPerformAction("press", nullptr));
    EXPECT_FALSE(screen->canPerformAction("unknown", nullptr));
}

using OutletDeathTest = Outlet;

TEST_F(OutletDeathTest, EndsTheProgramWhenReadUnconnected) {
    const auto readBox = [this] {
        load("<object class='UIView' id='FirstScreen'/>")->box->setHidden(true);
    };
    EXPECT_EXIT(readBox(), ::testing::KilledBySignal(SIGABRT),
                "Fatal error: The outlet FirstScreen\\.box is not connected\\.");
}

TEST_F(OutletDeathTest, EndsTheProgramWhenTheLayoutHasAnotherClass) {
    EXPECT_EXIT(load("<object class='UIView' id='FirstScreen'><child>"
                     "<object class='UIView' id='button'/></child></object>"),
                ::testing::KilledBySignal(SIGABRT),
                "Fatal error: The layout's object \"button\" is of another class than its "
                "outlet\\.");
}

TEST_F(OutletDeathTest, EndsTheProgramWhenAnActionsSenderIsOfAnotherClass) {
    const auto send = [this] {
        const auto screen = load(R"(
<object class="UIView" id="FirstScreen"><child><object class="GtkEntry" id="box">
  <signal name="activate" handler="pressButton"/></object></child></object>)");
        g_signal_emit_by_name(screen->box->widget(), "activate");
    };
    EXPECT_EXIT(send(), ::testing::KilledBySignal(SIGABRT),
                "Fatal error: The action \"pressButton\" was sent by an object of another "
                "class\\.");
}

TEST(WeakOutlet, DoesNotKeepItsObjectAlive) {
    startDesktop();
    UIWeakOutlet<UIView> outlet("Screen.view");
    auto view = std::make_shared<UIView>();
    outlet.connect(view);
    EXPECT_EQ(outlet.get(), view);
    view.reset();
    EXPECT_FALSE(outlet.isConnected());
}

}  // namespace
}  // namespace orvalo::testing
