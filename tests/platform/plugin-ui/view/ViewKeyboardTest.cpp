#include "platform/plugin-ui/view/WindowShortcuts.h"
#include "tests/platform/plugin-ui/view/ViewFixture.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using zoo::Misdeed;

constexpr unsigned long kSpace = 0x20;
constexpr unsigned long kE = 0x65;

// Masks of the X protocol.
constexpr long kKeyPressMask = 1;
constexpr unsigned kShift = 1U << 0U;
constexpr unsigned kCapsLock = 1U << 1U;
constexpr unsigned kControl = 1U << 2U;
constexpr unsigned kAlt = 1U << 3U;
constexpr unsigned kNumLock = 1U << 4U;
constexpr unsigned kSuper = 1U << 6U;

class ViewKeyboard : public ViewFixture {
  protected:
    /// Adds a shortcut that clicks the widget. trigger: as GTK's parser takes it.
    static void addShortcut(GtkWidget* widget, const char* trigger, GtkShortcutScope scope) {
        auto* controller = gtk_shortcut_controller_new();
        gtk_shortcut_controller_set_scope(GTK_SHORTCUT_CONTROLLER(controller), scope);
        gtk_shortcut_controller_add_shortcut(
            GTK_SHORTCUT_CONTROLLER(controller),
            gtk_shortcut_new(gtk_shortcut_trigger_parse_string(trigger),
                             gtk_signal_action_new("clicked")));
        gtk_widget_add_controller(widget, controller);
    }

    /// Shows the UI and clicks into it.
    void showAndClick() {
        embed();
        show();
        ASSERT_TRUE(pollUntil(
            [this] { return gtk_window_is_active(GTK_WINDOW(window_->window())) != FALSE; }));
        ASSERT_TRUE(fillsItsStage());
        const auto place = rectangleOf(record_.window);
        const auto before = keyboardFocus();
        click(place.x + 50, place.y + 50);
        ASSERT_TRUE(
            pollUntil([this, before] { return record_.clicks == 1 && keyboardFocus() != before; }));
    }

    bool activate(unsigned long keysym, unsigned state = 0) {
        return activateShortcut(window_->stage()->widget(), {keycode(keysym), state});
    }
};

TEST_F(ViewKeyboard, LeavesTheSpaceBarToTheButtonUntilTheUIIsClicked) {
    embed();
    window_->present();
    gtk_widget_grab_focus(window_->button());
    show();
    ASSERT_TRUE(
        pollUntil([this] { return gtk_window_is_active(GTK_WINDOW(window_->window())) != FALSE; }));
    ASSERT_TRUE(fillsItsStage());
    strikeKey(kSpace);
    ASSERT_TRUE(pollUntil([this] { return window_->presses() == 1; }));
    const auto place = rectangleOf(record_.window);
    const auto before = keyboardFocus();
    movePointer(place.x + 50, place.y + 50);
    runFor(20);
    strikeKey(kSpace);
    ASSERT_TRUE(pollUntil([this] { return window_->presses() == 2; }));
    EXPECT_TRUE(record_.keys.empty());
    click(place.x + 50, place.y + 50);
    ASSERT_TRUE(
        pollUntil([this, before] { return record_.clicks == 1 && keyboardFocus() != before; }));
    strikeKey(kSpace);
    ASSERT_TRUE(pollUntil([this] { return record_.keys.size() == 1; }));
    commit(Misdeed::takeKeyboard);
    const auto button = placeOf(window_->button());
    movePointer(button.x + 20, button.y + 10);
    ASSERT_TRUE(pollUntil([before] { return keyboardFocus() == before; }));
    strikeKey(kSpace);
    ASSERT_TRUE(pollUntil([this] { return window_->presses() == 3; }));
    EXPECT_EQ(record_.keys.size(), 1U);
}

TEST_F(ViewKeyboard, KeysThatTheUISendsOnReachTheWindowsShortcuts) {
    addShortcut(window_->button(), "space", GTK_SHORTCUT_SCOPE_GLOBAL);
    record_.keyMask = kKeyPressMask;
    showAndClick();
    strikeKey(kSpace);
    ASSERT_TRUE(pollUntil([this] { return window_->presses() == 1 && record_.keys.size() == 1; }));
    runFor(20);
    // The UI still has the keyboard.
    strikeKey(kSpace);
    ASSERT_TRUE(pollUntil([this] { return window_->presses() == 2; }));
    EXPECT_EQ(record_.keys.size(), 2U);
    record_.keyMask.reset();
    strikeKey(kSpace);
    ASSERT_TRUE(pollUntil([this] { return record_.keys.size() == 3; }));
    runFor(20);
    EXPECT_EQ(window_->presses(), 2);
}

TEST_F(ViewKeyboard, KeysThatTheUIDoesNotSelectReachTheWindowsShortcutsOnce) {
    addShortcut(window_->button(), "space", GTK_SHORTCUT_SCOPE_GLOBAL);
    showAndClick();
    commit(Misdeed::ignoreKeys);
    strikeKey(kSpace);
    ASSERT_TRUE(pollUntil([this] { return window_->presses() == 1; }));
    runFor(20);
    EXPECT_EQ(window_->presses(), 1);
    EXPECT_TRUE(record_.keys.empty());
}

TEST_F(ViewKeyboard, AShortcutMayCloseTheWindow) {
    record_.keyMask = kKeyPressMask;
    addShortcut(window_->button(), "space", GTK_SHORTCUT_SCOPE_GLOBAL);
    g_signal_connect_swapped(window_->button(), "clicked", G_CALLBACK(gtk_window_destroy),
                             window_->window());
    showAndClick();
    strikeKey(kSpace);
    EXPECT_TRUE(pollUntil([this] { return window_->window() == nullptr; }));
    EXPECT_EQ(record_.cleanups, 1);
}

TEST_F(ViewKeyboard, AShortcutNeedsItsModifiersAndNoOthers) {
    addShortcut(window_->button(), "<Control>e|<Alt><Shift>e", GTK_SHORTCUT_SCOPE_GLOBAL);
    window_->present();
    EXPECT_FALSE(activate(kE));
    EXPECT_TRUE(activate(kE, kControl));
    EXPECT_TRUE(activate(kE, kAlt | kShift));
    EXPECT_FALSE(activate(kE, kControl | kShift));
    EXPECT_FALSE(activate(kE, kControl | kSuper));
    EXPECT_FALSE(activate(kSpace, kControl));
    // Caps Lock and Num Lock do not matter.
    EXPECT_TRUE(activate(kE, kControl | kCapsLock | kNumLock));
    EXPECT_EQ(window_->presses(), 3);
}

TEST_F(ViewKeyboard, ShortcutsOfHiddenOrInsensitiveWidgetsAreIgnored) {
    addShortcut(window_->button(), "space", GTK_SHORTCUT_SCOPE_GLOBAL);
    EXPECT_FALSE(activate(kSpace));
    window_->present();
    EXPECT_TRUE(activate(kSpace));
    gtk_widget_set_sensitive(window_->button(), FALSE);
    EXPECT_FALSE(activate(kSpace));
    gtk_widget_set_sensitive(window_->button(), TRUE);
    gtk_widget_set_visible(window_->button(), FALSE);
    EXPECT_FALSE(activate(kSpace));
    EXPECT_EQ(window_->presses(), 1);
}

TEST_F(ViewKeyboard, LocalShortcutsAreIgnored) {
    addShortcut(window_->button(), "space", GTK_SHORTCUT_SCOPE_LOCAL);
    window_->present();
    EXPECT_FALSE(activate(kSpace));
    EXPECT_EQ(window_->presses(), 0);
}

}  // namespace
