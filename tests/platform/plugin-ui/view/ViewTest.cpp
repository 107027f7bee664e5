#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <thread>

#include "platform/foundation/RunLoop.h"
#include "platform/plugin-ui/generic/GenericViewController.h"

#include "tests/platform/plugin-ui/view/ViewFixture.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::HasSubstr;
using zoo::Misdeed;

constexpr std::uint32_t kGain = 4;

using View = ViewFixture;

TEST_F(View, OpensTheUIBeforeItComesOnScreen) {
    embed();
    window_->stage()->setHidden(true);
    window_->present();
    ASSERT_TRUE(pollUntil([this] { return record_.instantiations == 1; }));
    runFor(40);
    EXPECT_EQ(record_.exposures, 0);
    EXPECT_EQ(rectangleOf(record_.window), X11Rect());
    window_->stage()->setHidden(false);
    ASSERT_TRUE(pollUntil([this] { return record_.exposures > 0; }));
    EXPECT_EQ(record_.instantiations, 1);
    EXPECT_EQ(record_.scaleFactor, 1.0F);
    EXPECT_TRUE(fillsItsStage());
    window_->stage()->setHidden(true);
    EXPECT_TRUE(waitForRectangle(record_.window, {}));
    window_->stage()->setHidden(false);
    EXPECT_TRUE(fillsItsStage());
    EXPECT_EQ(record_.instantiations, 1);
}

TEST_F(View, IsPlacedBeforeGTKDrawsTheStage) {
    embed();
    window_->stage()->setHidden(true);
    window_->present();
    ASSERT_TRUE(pollUntil([this] { return record_.instantiations == 1; }));
    std::optional<bool> stood;
    // While GTK draws, the main loop does not run: the window was placed before.
    std::function<void()> drawn = [&] {
        if (gtk_widget_get_mapped(window_->stage()->widget()) == FALSE || stood) {
            return;
        }
        const auto end = g_get_monotonic_time() + 20 * G_TIME_SPAN_SECOND;
        do {
            stood = rectangleOf(record_.window) == window_->place();
        } while (!*stood && g_get_monotonic_time() < end);
    };
    auto* clock = gtk_widget_get_frame_clock(window_->window());
    const auto handler = g_signal_connect_swapped(
        clock, "paint", G_CALLBACK(+[](const std::function<void()>* call) { (*call)(); }), &drawn);
    window_->stage()->setHidden(false);
    EXPECT_TRUE(pollUntil([&stood] { return stood.has_value(); }));
    g_signal_handler_disconnect(clock, handler);
    EXPECT_EQ(stood, true);
}

TEST_F(View, FollowsItsPlace) {
    embed();
    show();
    EXPECT_TRUE(fillsItsStage());
    gtk_widget_set_size_request(window_->button(), -1, 150);
    ASSERT_TRUE(pollUntil([this] { return gtk_widget_get_height(window_->button()) > 120; }));
    EXPECT_TRUE(fillsItsStage());
    // Moved, with the same size.
    gtk_widget_set_margin_start(window_->stage()->widget(), 60);
    gtk_window_set_default_size(GTK_WINDOW(window_->window()), 760, 500);
    ASSERT_TRUE(pollUntil([this] { return gtk_widget_get_width(window_->window()) == 760; }));
    EXPECT_TRUE(fillsItsStage());
}

TEST_F(View, TakesClicksAndDrags) {
    embed();
    show();
    ASSERT_TRUE(fillsItsStage());
    const auto place = rectangleOf(record_.window);
    click(place.x + 130, place.y + 50);
    ASSERT_TRUE(pollUntil([this] { return unit_->controls().value(kGain) == 1.3F; }));
    pressButton(1);
    movePointer(place.x + 210, place.y + 60);
    releaseButton(1);
    ASSERT_TRUE(pollUntil([this] { return unit_->controls().value(kGain) == 2.1F; }));
    unit_->controls().setValue(kGain, 0.125F);
    ASSERT_TRUE(pollUntil([this] { return record_.values[kGain] == 0.125F; }));
    EXPECT_EQ(window_->presses(), 0);
}

TEST_F(View, IsHiddenFromTheStartOfATransitionToAnotherPage) {
    embed();
    auto* pages = gtk_stack_new();
    // Longer than the test.
    gtk_stack_set_transition_duration(GTK_STACK(pages), 600'000);
    gtk_stack_set_transition_type(GTK_STACK(pages), GTK_STACK_TRANSITION_TYPE_CROSSFADE);
    auto* other = gtk_label_new("Help");
    auto* page = GTK_WIDGET(g_object_ref(gtk_window_get_child(GTK_WINDOW(window_->window()))));
    gtk_window_set_child(GTK_WINDOW(window_->window()), pages);
    gtk_stack_add_child(GTK_STACK(pages), page);
    g_object_unref(page);
    gtk_stack_add_child(GTK_STACK(pages), other);
    show();
    ASSERT_TRUE(fillsItsStage());
    gtk_stack_set_visible_child(GTK_STACK(pages), other);
    EXPECT_TRUE(waitForRectangle(record_.window, {}));
    EXPECT_TRUE(gtk_stack_get_transition_running(GTK_STACK(pages)));
    gtk_stack_set_visible_child(GTK_STACK(pages), page);
    EXPECT_TRUE(fillsItsStage());
    EXPECT_EQ(record_.instantiations, 1);
}

TEST_F(View, CanBeRemovedAddedAgainAndMovedOutOfTheStage) {
    embed();
    show();
    ASSERT_TRUE(fillsItsStage());
    const auto view = controller_->view();
    view->removeFromSuperview();
    EXPECT_EQ(record_.cleanups, 1);
    window_->stage()->addSubview(view);
    view->setTranslatesAutoresizingMaskIntoConstraints(true);
    view->setFrame({20, 10, 300, 200});
    const auto stage = window_->place();
    EXPECT_TRUE(pollUntil([this, &stage] {
        return rectangleOf(record_.window) == X11Rect{stage.x + 20, stage.y + 10, 300, 200};
    }));
    EXPECT_EQ(record_.instantiations, 2);
    // Partly outside.
    view->setFrame({-40, 10, 300, 200});
    EXPECT_TRUE(waitForRectangle(record_.window, {stage.x - 40, stage.y + 10, 300, 200}));
    EXPECT_TRUE(pollUntil([&stage] { return pixelAt(stage.x - 1, stage.y + 50) != 0x336699U; }));
    view->setFrame({-400, 0, 300, 200});
    EXPECT_TRUE(waitForRectangle(record_.window, {}));
}

TEST_F(View, ScrollsWhenTheUIIsLarger) {
    embed();
    show();
    ASSERT_TRUE(fillsItsStage());
    commit(Misdeed::growHints);
    ASSERT_TRUE(pollUntil([this] { return record_.width == 900; }));
    const auto stage = window_->place();
    ASSERT_TRUE(pollUntil([this, &stage] { return rectangleOf(record_.window).x == stage.x; }));
    auto* scroller = GTK_SCROLLED_WINDOW(controller_->view()->widget());
    auto* across = gtk_scrolled_window_get_hadjustment(scroller);
    ASSERT_TRUE(pollUntil([across] { return gtk_adjustment_get_upper(across) == 900.0; }));
    gtk_adjustment_set_value(across, 80.0);
    EXPECT_TRUE(waitForRectangle(record_.window, {stage.x - 80, stage.y, 900, 700}));
    // The scroll bar is beside the UI.
    EXPECT_TRUE(pollUntil(
        [&stage] { return pixelAt(stage.x + stage.width - 3, stage.y + 100) != 0x336699U; }));
    EXPECT_TRUE(waitForColor(stage.x + 1, stage.y + 100, 0x336699U));
}

TEST_F(View, OpensAClosedUIAgainWhenItNextComesOnScreen) {
    embed();
    show();
    record_.misdeed = Misdeed::close;
    ASSERT_TRUE(pollUntil([this] { return record_.cleanups == 1; }));
    runFor(40);
    EXPECT_EQ(record_.instantiations, 1);
    window_->stage()->setHidden(true);
    runFor(20);
    window_->stage()->setHidden(false);
    ASSERT_TRUE(pollUntil([this] { return record_.instantiations == 2; }));
    EXPECT_TRUE(fillsItsStage());
}

TEST_F(View, LogsAFailedInstantiationOfTheUI) {
    embed("refusing");
    const CapturedOutput errors(2);
    window_->present();
    ASSERT_TRUE(pollUntil([&errors] { return errors.text().ends_with("be made.\n"); }));
    EXPECT_THAT(errors.text(), HasSubstr("The UI of <urn:orvalo:ui:refusing> cannot "
                                         "be shown: it refuses to be made."));
}

TEST_F(View, IsDeliveredLaterOnTheMainThread) {
    unit_ = makeUnit("probe");
    std::thread asker([this] {
        unit_->requestViewController([this](const auto& controller) {
            EXPECT_TRUE(RunLoop::isMainThread());
            controller_ = controller;
        });
    });
    asker.join();
    EXPECT_EQ(controller_, nullptr);
    ASSERT_TRUE(pollUntil([this] { return controller_ != nullptr; }));
}

TEST_F(View, IsMadeFromThePortsWithOneLogLineWhenThereIsNothingToEmbed) {
    for (const std::string name :
         {"none", "toolkit", "demanding", "optional", "missing", "foreign"}) {
        const CapturedOutput errors(2);
        EXPECT_NE(std::dynamic_pointer_cast<GenericViewController>(request(name)), nullptr);
        int lines = 0;
        for (const auto& line : errors.lines()) {
            // GLib begins a warning with an empty line; another line names the effect's bundle.
            lines += line.empty() || line.find(" is loaded from ") != std::string::npos ? 0 : 1;
        }
        EXPECT_EQ(lines, 1) << errors.text();
        EXPECT_THAT(errors.text(), HasSubstr("<urn:orvalo:ui:" + name + ">"));
    }
}

TEST_F(View, ClosesTheUIWithItsWindow) {
    embed();
    show();
    window_->close();
    EXPECT_EQ(record_.cleanups, 1);
    runFor(10);
    controller_ = nullptr;
}

TEST_F(View, ClosesTheUIWithItsController) {
    embed();
    show();
    const std::weak_ptr<UIViewController> controller = controller_;
    controller_ = nullptr;
    EXPECT_TRUE(controller.expired());
    EXPECT_EQ(record_.cleanups, 1);
    runFor(20);
}

TEST_F(View, CanBeAddedAndRemovedManyTimes) {
    for (int round = 0; round < 10; ++round) {
        embed();
        record_.exposures = 0;
        show();
        controller_->view()->removeFromSuperview();
        controller_ = nullptr;
    }
    EXPECT_EQ(record_.instantiations, 10);
    EXPECT_EQ(record_.cleanups, 10);
}

}  // namespace
