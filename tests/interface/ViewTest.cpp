#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <cstdlib>
#include <optional>

#include "platform/audio/view/LV2ViewController.h"
#include "platform/foundation/RunLoop.h"
#include "platform/ui/NSLayoutConstraint.h"
#include "tests/interface/Effects.h"
#include "tests/interface/Pointer.h"
#include "tests/interface/Screen.h"
#include "tests/interface/WidgetPlace.h"
#include "tests/interface/WindowManager.h"
#include "tests/testing/CapturedOutput.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::HasSubstr;
using zoo::Misdeed;

constexpr std::uint32_t kGain = 4;

/// A window with a button above a stage, as the main screen has them, and an interface in the
/// stage.
class View : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        screen();
        startWindowManager();
        gtk_init();
        LV2ViewController::enable();
    }

    View() : record_(interfaceRecord()) {
        movePointer(1, 1);
        resetRecord();
        window_ = gtk_window_new();
        gtk_window_set_default_size(GTK_WINDOW(window_), 700, 500);
        auto* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
        button_ = gtk_button_new_with_label("Play");
        gtk_box_append(GTK_BOX(box), button_);
        stage_ = std::make_shared<UIView>();
        gtk_widget_set_vexpand(stage_->widget(), TRUE);
        gtk_box_append(GTK_BOX(box), stage_->widget());
        gtk_window_set_child(GTK_WINDOW(window_), box);
        g_signal_connect_swapped(button_, "clicked", G_CALLBACK(+[](int* count) { ++*count; }),
                                 &plays_);
        g_object_add_weak_pointer(G_OBJECT(window_), reinterpret_cast<void**>(&window_));
    }

    ~View() override {
        closeWindow();
        controller_ = nullptr;
        stage_ = nullptr;
        EXPECT_EQ(record_.cleanups, record_.instantiations);
        EXPECT_FALSE(record_.wasMappedAtCleanup);
    }

    void closeWindow() {
        if (window_ != nullptr) {
            gtk_window_destroy(GTK_WINDOW(window_));
        }
    }

    std::shared_ptr<UIViewController> request(const std::string& name) {
        unit_ = makeUnit(name);
        std::optional<std::shared_ptr<UIViewController>> delivered;
        unit_->requestViewController([&delivered](const auto& controller) {
            EXPECT_TRUE(RunLoop::isMainThread());
            delivered = controller;
        });
        EXPECT_FALSE(delivered.has_value());
        EXPECT_TRUE(waitFor([&delivered] { return delivered.has_value(); }));
        return delivered.value_or(nullptr);
    }

    /// Puts an interface into the stage as the main screen does.
    void embed(const std::string& name = "probe") {
        controller_ = request(name);
        ASSERT_NE(controller_, nullptr);
        const auto view = controller_->view();
        view->setFrame(stage_->bounds());
        stage_->addSubview(view);
        view->setTranslatesAutoresizingMaskIntoConstraints(false);
        NSLayoutConstraint::activate({view->topAnchor().constraint(stage_->topAnchor()),
                                      view->leadingAnchor().constraint(stage_->leadingAnchor()),
                                      view->bottomAnchor().constraint(stage_->bottomAnchor()),
                                      view->trailingAnchor().constraint(stage_->trailingAnchor())});
    }

    void show() {
        gtk_window_present(GTK_WINDOW(window_));
        ASSERT_TRUE(waitFor([this] { return record_.exposures > 0; }));
    }

    bool fillsItsStage() {
        return waitFor([this] {
            const auto place = placeOf(stage_->widget());
            return !place.isEmpty() && rectangleOf(record_.window) == place;
        });
    }

    void commit(Misdeed misdeed) {
        record_.misdeed = misdeed;
        ASSERT_TRUE(waitFor([this] { return record_.misdeed == Misdeed::none; }));
    }

    zoo::InterfaceRecord& record_;
    GtkWidget* window_;
    GtkWidget* button_;
    std::shared_ptr<UIView> stage_;
    std::shared_ptr<LV2LocalAudioUnit> unit_;
    std::shared_ptr<UIViewController> controller_;
    int plays_ = 0;
};

TEST_F(View, OpensTheInterfaceWhenItComesOnScreenFirst) {
    embed();
    stage_->setHidden(true);
    gtk_window_present(GTK_WINDOW(window_));
    ASSERT_TRUE(waitFor([this] { return gtk_widget_get_mapped(window_) != FALSE; }));
    runFor(40);
    EXPECT_EQ(record_.instantiations, 0);
    stage_->setHidden(false);
    ASSERT_TRUE(waitFor([this] { return record_.exposures > 0; }));
    EXPECT_EQ(record_.instantiations, 1);
    EXPECT_EQ(record_.scaleFactor, 1.0F);
    EXPECT_TRUE(fillsItsStage());
    stage_->setHidden(true);
    EXPECT_TRUE(comesTo(record_.window, {}));
    stage_->setHidden(false);
    EXPECT_TRUE(fillsItsStage());
    EXPECT_EQ(record_.instantiations, 1);
}

TEST_F(View, FollowsItsPlace) {
    embed();
    show();
    EXPECT_TRUE(fillsItsStage());
    gtk_widget_set_size_request(button_, -1, 150);
    ASSERT_TRUE(waitFor([this] { return gtk_widget_get_height(button_) > 120; }));
    EXPECT_TRUE(fillsItsStage());
    // Moved, with the extent that it has.
    gtk_widget_set_margin_start(stage_->widget(), 60);
    gtk_window_set_default_size(GTK_WINDOW(window_), 760, 500);
    ASSERT_TRUE(waitFor([this] { return gtk_widget_get_width(window_) == 760; }));
    EXPECT_TRUE(fillsItsStage());
}

TEST_F(View, TakesClicksAndDrags) {
    embed();
    show();
    ASSERT_TRUE(fillsItsStage());
    const auto place = rectangleOf(record_.window);
    click(place.x + 130, place.y + 50);
    ASSERT_TRUE(waitFor([this] { return unit_->controls().value(kGain) == 1.3F; }));
    pressButton(1);
    movePointer(place.x + 210, place.y + 60);
    releaseButton(1);
    ASSERT_TRUE(waitFor([this] { return unit_->controls().value(kGain) == 2.1F; }));
    unit_->controls().setValue(kGain, 0.125F);
    ASSERT_TRUE(waitFor([this] { return record_.values[kGain] == 0.125F; }));
    EXPECT_EQ(plays_, 0);
}

TEST_F(View, LeavesTheSpaceBarToTheButtonUnlessThePointerIsInIt) {
    constexpr unsigned long kSpace = 0x20;
    embed();
    gtk_window_present(GTK_WINDOW(window_));
    gtk_widget_grab_focus(button_);
    show();
    ASSERT_TRUE(waitFor([this] { return gtk_window_is_active(GTK_WINDOW(window_)) != FALSE; }));
    ASSERT_TRUE(fillsItsStage());
    strikeKey(kSpace);
    ASSERT_TRUE(waitFor([this] { return plays_ == 1; }));
    const auto place = rectangleOf(record_.window);
    const auto before = keyboardFocus();
    click(place.x + 50, place.y + 50);
    ASSERT_TRUE(
        waitFor([this, before] { return record_.clicks == 1 && keyboardFocus() != before; }));
    strikeKey(kSpace);
    ASSERT_TRUE(waitFor([this] { return record_.keys.size() == 1; }));
    commit(Misdeed::takeKeyboard);
    const auto button = placeOf(button_);
    movePointer(button.x + 20, button.y + 10);
    ASSERT_TRUE(waitFor([before] { return keyboardFocus() == before; }));
    strikeKey(kSpace);
    ASSERT_TRUE(waitFor([this] { return plays_ == 2; }));
    EXPECT_EQ(record_.keys.size(), 1U);
}

TEST_F(View, ScrollsWhereTheInterfaceIsLarger) {
    embed();
    show();
    commit(Misdeed::growHints);
    ASSERT_TRUE(waitFor([this] { return record_.width == 900; }));
    const auto stage = placeOf(stage_->widget());
    ASSERT_TRUE(waitFor([this, &stage] { return rectangleOf(record_.window).x == stage.x; }));
    auto* scroller = GTK_SCROLLED_WINDOW(controller_->view()->widget());
    auto* across = gtk_scrolled_window_get_hadjustment(scroller);
    ASSERT_TRUE(waitFor([across] { return gtk_adjustment_get_upper(across) == 900.0; }));
    gtk_adjustment_set_value(across, 80.0);
    EXPECT_TRUE(comesTo(record_.window, {stage.x - 80, stage.y, 900, 700}));
    // The bar stands beside the interface.
    EXPECT_NE(pixelAt(stage.x + stage.width - 3, stage.y + 100), 0x336699U);
    EXPECT_TRUE(isPainted(stage.x + 1, stage.y + 100, 0x336699U));
}

TEST_F(View, SaysThatTheInterfaceIsClosedAndOpensItAnewTheNextTime) {
    embed();
    show();
    record_.misdeed = Misdeed::close;
    ASSERT_TRUE(waitFor([this] { return record_.cleanups == 1; }));
    runFor(40);
    EXPECT_EQ(record_.instantiations, 1);
    stage_->setHidden(true);
    runFor(20);
    stage_->setHidden(false);
    ASSERT_TRUE(waitFor([this] { return record_.instantiations == 2; }));
    EXPECT_TRUE(fillsItsStage());
}

TEST_F(View, SaysWhenTheInterfaceRefusesToBeMade) {
    embed("refusing");
    const CapturedOutput errors(2);
    gtk_window_present(GTK_WINDOW(window_));
    ASSERT_TRUE(waitFor([&errors] { return errors.text().ends_with("be made.\n"); }));
    EXPECT_THAT(errors.text(), HasSubstr("The interface of <urn:orvalo:interface:refusing> cannot "
                                         "be shown: it refuses to be made."));
}

TEST_F(View, IsAbsentWithOneLineWhenThereIsNothingToEmbed) {
    for (const std::string name :
         {"none", "toolkit", "demanding", "optional", "missing", "foreign"}) {
        const CapturedOutput errors(2);
        EXPECT_EQ(request(name), nullptr);
        int lines = 0;
        for (const auto& line : errors.lines()) {
            // GLib begins a warning with an empty line.
            lines += line.empty() ? 0 : 1;
        }
        EXPECT_EQ(lines, 1) << errors.text();
        EXPECT_THAT(errors.text(), HasSubstr("<urn:orvalo:interface:" + name + ">"));
    }
}

TEST_F(View, GoesInAnyOrder) {
    // The window first, the controller later.
    embed();
    show();
    closeWindow();
    EXPECT_EQ(record_.cleanups, 1);
    runFor(10);
    controller_ = nullptr;
    // The controller while its view is still on screen.
    EXPECT_EQ(record_.cleanups, 1);
}

TEST_F(View, LosesItsControllerWhileItIsShown) {
    embed();
    show();
    const std::weak_ptr<UIViewController> controller = controller_;
    controller_ = nullptr;
    EXPECT_TRUE(controller.expired());
    EXPECT_EQ(record_.cleanups, 1);
    runFor(20);
}

TEST_F(View, IsTakenOutOfItsStageAndPutBack) {
    embed();
    show();
    const auto view = controller_->view();
    view->removeFromSuperview();
    EXPECT_EQ(record_.cleanups, 1);
    record_.exposures = 0;
    stage_->addSubview(view);
    view->setTranslatesAutoresizingMaskIntoConstraints(true);
    view->setFrame(CGRect(20, 30, 300, 200));
    ASSERT_TRUE(waitFor([this] { return record_.exposures > 0; }));
    const auto stage = placeOf(stage_->widget());
    EXPECT_TRUE(comesTo(record_.window, {stage.x + 20, stage.y + 30, 300, 200}));
    // Larger than the stage, and partly outside.
    view->setFrame(CGRect(-40, 10, 300, 200));
    EXPECT_TRUE(comesTo(record_.window, {stage.x - 40, stage.y + 10, 300, 200}));
    EXPECT_NE(pixelAt(stage.x - 1, stage.y + 50), 0x336699U);
}

TEST_F(View, ComesAndGoesManyTimes) {
    for (int round = 0; round < 10; ++round) {
        embed();
        if (window_ == nullptr) {
            break;
        }
        record_.exposures = 0;
        show();
        controller_->view()->removeFromSuperview();
        controller_ = nullptr;
    }
    EXPECT_EQ(record_.instantiations, 10);
    EXPECT_EQ(record_.cleanups, 10);
}

}  // namespace
