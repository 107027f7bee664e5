#include <gtest/gtest.h>

#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "tests/platform/plugin-ui/view/StageWindow.h"
#include "tests/platform/plugin-ui/x11/Effects.h"
#include "tests/platform/plugin-ui/x11/Pointer.h"
#include "tests/platform/plugin-ui/x11/Screen.h"
#include "tests/testing/WaitUntil.h"

// Last: its macros break other headers.
#include <X11/Xlib.h>
#include <gdk/x11/gdkx.h>

namespace {

using namespace orvalo;
using namespace orvalo::testing;

constexpr unsigned long kTab = 0xFF09;
constexpr unsigned long kShift = 0xFFE1;
constexpr unsigned long kUp = 0xFF52;

/// More than the UI has.
constexpr int mostPlaces = 80;

/// The effect's own UI in a window with a button, which has the focus.
class OrvaloKeys : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { startToolkit(); }

    void SetUp() override {
        movePointer(1, 1);
        unit_ = std::make_shared<LV2LocalAudioUnit>(LV2World::shared(), "urn:tessaly:orvalo",
                                                    AudioComponentDescription{});
        unit_->allocateRenderResources(48000.0);
        controller_ = requestPluginUI(*unit_);
        ASSERT_NE(controller_, nullptr);
        window_.embed(*controller_);
        window_.present();
        ASSERT_TRUE(pollUntil([this] { return countColors(window_.place()) > 8; }));
        ASSERT_TRUE(pollUntil(
            [this] { return gtk_window_is_active(GTK_WINDOW(window_.window())) != FALSE; }));
        gtk_widget_grab_focus(window_.button());
        const auto place = window_.place();
        pluginUI_ = windowAt(place.x + place.width / 2, place.y + place.height - 20);
        outside_ = keyboardFocus();
        ASSERT_NE(outside_, pluginUI_);
    }

    bool isInUI() const { return keyboardFocus() == pluginUI_; }
    bool isOnButton() const {
        return keyboardFocus() == outside_ && gtk_widget_is_focus(window_.button()) != FALSE;
    }
    static void strikeShiftTab() {
        holdKey(kShift, true);
        strikeKey(kTab);
        holdKey(kShift, false);
    }
    float value(const std::string& symbol) {
        render(*unit_);
        for (const auto& port : unit_->data().ports) {
            if (port.symbol == symbol) {
                return unit_->controls().value(port.index);
            }
        }
        ADD_FAILURE() << symbol;
        return 0.0F;
    }

    StageWindow window_;
    std::shared_ptr<LV2LocalAudioUnit> unit_;
    std::shared_ptr<UIViewController> controller_;
    unsigned long pluginUI_ = 0;
    unsigned long outside_ = 0;
};

TEST_F(OrvaloKeys, TabGoesIntoTheUIAndOutOfIt) {
    strikeKey(kTab);
    ASSERT_TRUE(pollUntil([this] { return isInUI(); }));
    // The arrow keys turn the first knob that is reached.
    const float before = value("threshold");
    int places = 0;
    while (places < mostPlaces && value("threshold") == before) {
        strikeKey(kTab);
        strikeKey(kUp);
        runFor(10);
        ++places;
    }
    EXPECT_EQ(value("threshold"), before + 1.0F);
    for (int place = 0; place < places; ++place) {
        EXPECT_TRUE(isInUI()) << place;
        strikeShiftTab();
        runFor(10);
    }
    EXPECT_TRUE(isInUI());
    strikeShiftTab();
    ASSERT_TRUE(pollUntil([this] { return isOnButton(); }));
    // Into the UI from its end, and out again.
    strikeShiftTab();
    ASSERT_TRUE(pollUntil([this] { return isInUI(); }));
    strikeKey(kTab);
    EXPECT_TRUE(pollUntil([this] { return isOnButton(); }));
}

TEST_F(OrvaloKeys, TabLeavesTheUIBehindItsLastControl) {
    strikeKey(kTab);
    ASSERT_TRUE(pollUntil([this] { return isInUI(); }));
    int presses = 0;
    while (presses < mostPlaces && !isOnButton()) {
        strikeKey(kTab);
        ++presses;
        runFor(10);
    }
    // At least the presets' three fields, 14 controls, pad, history and meters.
    EXPECT_GE(presses, 20);
    EXPECT_LT(presses, mostPlaces);
}

TEST_F(OrvaloKeys, ThePadDucks) {
    const auto place = window_.place();
    const float before = value("midi_in_count");
    // At the right edge, beside the history.
    movePointer(place.x + place.width - 40, place.y + place.height / 4);
    pressButton(1);
    EXPECT_TRUE(pollUntil([&] { return value("ducking") > 1.0F; }));
    EXPECT_EQ(value("midi_in_count"), before + 1.0F);
    releaseButton(1);
    EXPECT_TRUE(pollUntil([&] { return value("midi_in_count") == before + 2.0F; }));
    EXPECT_TRUE(pollUntil([&] { return value("ducking") < 0.1F; }));
}

TEST_F(OrvaloKeys, KeysArriveWhenThePointerHasLeft) {
    const auto place = window_.place();
    // On the name of the effect, where a click does nothing else.
    click(place.x + 40, place.y + 20);
    ASSERT_TRUE(pollUntil([this] { return isInUI(); }));
    // The UI has the focus before the host has seen the click: a note takes longer.
    float before = value("midi_in_count");
    holdKey('a', true);
    ASSERT_TRUE(pollUntil([&] { return value("midi_in_count") == before + 1.0F; }));
    holdKey('a', false);
    ASSERT_TRUE(pollUntil([&] { return value("midi_in_count") == before + 2.0F; }));
    const auto button = placeOf(window_.button());
    movePointer(button.x + 20, button.y + 10);
    runFor(20);
    before = value("midi_in_count");
    holdKey('a', true);
    EXPECT_TRUE(pollUntil([&] { return value("midi_in_count") == before + 1.0F; }));
    EXPECT_GT(value("ducking"), 0.0F);
    holdKey('a', false);
    EXPECT_TRUE(pollUntil([&] { return value("midi_in_count") == before + 2.0F; }));
    // A click elsewhere takes the keyboard, and ends a note that is held.
    holdKey('s', true);
    EXPECT_TRUE(pollUntil([&] { return value("midi_in_count") == before + 3.0F; }));
    click(button.x + 20, button.y + 10);
    EXPECT_TRUE(pollUntil([&] { return value("midi_in_count") == before + 4.0F; }));
    holdKey('s', false);
    EXPECT_TRUE(pollUntil([this] { return isOnButton(); }));
}

/// Many window managers send WM_TAKE_FOCUS at each click into a window, also into its UI.
TEST_F(OrvaloKeys, TheToolkitLeavesTheFocusToTheUI) {
    const auto place = window_.place();
    click(place.x + place.width / 2, place.y + place.height - 20);
    ASSERT_TRUE(pollUntil([this] { return isInUI(); }));
    auto* const toolkit = gtk_widget_get_display(window_.window());
    const auto toplevel =
        gdk_x11_surface_get_xid(gtk_native_get_surface(GTK_NATIVE(window_.window())));
    const auto send = [toplevel](const char* type, const char* content) {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = toplevel;
        event.xclient.message_type = XInternAtom(screen(), type, False);
        event.xclient.format = 32;
        event.xclient.data.l[0] = static_cast<long>(XInternAtom(screen(), content, False));
        event.xclient.data.l[1] = CurrentTime;
        XSendEvent(screen(), toplevel, False, NoEventMask, &event);
        XFlush(screen());
    };
    bool isHandled = false;
    const auto handler = g_signal_connect(
        toolkit, "xevent",
        G_CALLBACK(+[](GdkDisplay* /*toolkit*/, const XEvent* event, bool* handled) -> gboolean {
            const auto end = XInternAtom(event->xany.display, "_ORVALO_TEST_END", False);
            *handled |= event->type == ClientMessage && event->xclient.message_type == end;
            return FALSE;
        }),
        &isHandled);
    XSelectInput(screen(), pluginUI_, FocusChangeMask);
    send("WM_PROTOCOLS", "WM_TAKE_FOCUS");
    send("_ORVALO_TEST_END", "_ORVALO_TEST_END");
    EXPECT_TRUE(pollUntil([&isHandled] { return isHandled; }));
    gdk_display_sync(toolkit);
    XSync(screen(), False);
    XEvent lost;
    EXPECT_FALSE(XCheckTypedWindowEvent(screen(), pluginUI_, FocusOut, &lost));
    EXPECT_TRUE(isInUI());
    XSelectInput(screen(), pluginUI_, NoEventMask);
    g_signal_handler_disconnect(toolkit, handler);
}

}  // namespace
