// Before X11, whose macros collide with names of GoogleTest.
#include <gtest/gtest.h>

#include <X11/XKBlib.h>
#include <X11/keysym.h>

#include "effect/ui/model/GraphAreas.h"
#include "tests/effect/ui/WindowFixture.h"

namespace {

using namespace orvalo::testing;
using orvalo::effect::ui::padAreas;
using orvalo::effect::ui::Rect;

class WindowNotesTest : public EmbeddedUIFixture {
  protected:
    using Messages = std::vector<std::string>;

    bool untilSent(std::size_t count) {
        return pluginUI.idleUntil([&] { return pluginUI.messages.size() >= count; });
    }
    void takeKeyboard() {
        host.click(dial(Parameter::threshold).centerX(), dial(Parameter::threshold).centerY());
        pluginUI.settle();
    }
};

TEST_F(WindowNotesTest, PadSendsNotesAsAtoms) {
    constexpr std::uint32_t amber = 0xE3A84B;
    const Rect pad = padAreas(layout).pad;
    host.movePointer(pad.centerX(), pad.centerY());
    host.button(Button1, true);
    ASSERT_TRUE(untilSent(1));
    ASSERT_TRUE(pluginUI.idleUntil([&] { return pluginUI.pixels().part(pad).count(amber) > 100; }));
    // The note lasts while the button is held, also outside.
    host.movePointer(5.0, 5.0);
    pluginUI.settle();
    EXPECT_EQ(pluginUI.messages.size(), 1U);
    host.button(Button1, false);
    ASSERT_TRUE(untilSent(2));
    EXPECT_EQ(pluginUI.messages[0].substr(0, 6), "90 24 ");
    EXPECT_NEAR(std::stoi(pluginUI.messages[0].substr(6), nullptr, 16), 64, 1);
    EXPECT_EQ(pluginUI.messages[1], "80 24 00");
    EXPECT_EQ(pluginUI.writes, Writes{});
}

TEST_F(WindowNotesTest, KeysSendNotesWhileTheyAreHeld) {
    takeKeyboard();
    host.key(XK_a, true);
    host.key(XK_k, true);
    ASSERT_TRUE(untilSent(2));
    host.key(XK_a, false);
    ASSERT_TRUE(untilSent(3));
    host.key(XK_k, false);
    ASSERT_TRUE(untilSent(4));
    EXPECT_EQ(pluginUI.messages, (Messages{"90 30 64", "90 3c 64", "80 30 00", "80 3c 00"}));
}

TEST_F(WindowNotesTest, HeldKeyDoesNotRetrigger) {
    takeKeyboard();
    XAutoRepeatOn(host.display());
    XkbSetAutoRepeatRate(host.display(), XkbUseCoreKbd, 20, 10);
    // The host sees the repeated presses, too.
    XSelectInput(host.display(), pluginUI.window(), KeyPressMask);
    host.key(XK_d, true);
    XEvent event;
    int presses = 0;
    ASSERT_TRUE(pluginUI.idleUntil([&] {
        presses += XCheckTypedWindowEvent(host.display(), pluginUI.window(), KeyPress, &event) != 0;
        return presses > 5;
    }));
    host.key(XK_d, false);
    ASSERT_TRUE(untilSent(2));
    EXPECT_EQ(pluginUI.messages, (Messages{"90 34 64", "80 34 00"}));
}

TEST_F(WindowNotesTest, NotesEndWhenTheFocusIsLost) {
    takeKeyboard();
    host.key(XK_f, true);
    ASSERT_TRUE(untilSent(1));
    XSetInputFocus(host.display(), host.id(), RevertToParent, CurrentTime);
    XSync(host.display(), False);
    ASSERT_TRUE(untilSent(2));
    EXPECT_EQ(pluginUI.messages, (Messages{"90 35 64", "80 35 00"}));
    host.key(XK_f, false);
}

TEST_F(WindowNotesTest, NotesEndWithTheUI) {
    takeKeyboard();
    host.key(XK_g, true);
    ASSERT_TRUE(untilSent(1));
    pluginUI.close();
    EXPECT_EQ(pluginUI.messages, (Messages{"90 37 64", "80 37 00"}));
    host.key(XK_g, false);
}

}  // namespace
