#include <X11/keysym.h>

#include "tests/effect/EffectWorld.h"
#include "tests/effect/ui/WindowFixture.h"

namespace {

using namespace orvalo::testing;

class WindowInputTest : public EmbeddedUIFixture {
  protected:
    void clickIn(const orvalo::effect::ui::Rect& area) {
        host.click(area.centerX(), area.centerY());
    }
};

constexpr std::uint32_t threshold = 7;
constexpr std::uint32_t attack = 10;

TEST_F(WindowInputTest, DraggingAKnobWritesItsPort) {
    const auto& knob = dial(Parameter::threshold);
    host.movePointer(knob.centerX(), knob.centerY());
    host.button(Button1, true);
    ASSERT_TRUE(pluginUI.idleUntil([&] { return !pluginUI.touches.empty(); }));
    EXPECT_EQ(pluginUI.touches, Touches{"grab 7"});
    // 20 of 200 pixels of 60 dB.
    host.movePointer(knob.centerX(), knob.centerY() - 20.0);
    ASSERT_TRUE(untilWritten(1));
    host.button(Button1, false);
    ASSERT_TRUE(pluginUI.idleUntil([&] { return pluginUI.touches.size() == 2; }));
    EXPECT_EQ(pluginUI.writes, (Writes{{threshold, -12.0F}}));
    EXPECT_EQ(pluginUI.touches, (Touches{"grab 7", "let 7"}));
}

/// Presses the left button on the threshold's knob.
class WindowDragTest : public WindowInputTest {
  protected:
    WindowDragTest() {
        host.movePointer(knob.centerX(), knob.centerY());
        host.button(Button1, true);
        EXPECT_TRUE(pluginUI.idleUntil([&] { return pluginUI.touches == Touches{"grab 7"}; }));
    }
    ~WindowDragTest() override { host.button(Button1, false); }
    WindowDragTest(const WindowDragTest&) = delete;
    WindowDragTest& operator=(const WindowDragTest&) = delete;

    const orvalo::effect::ui::Rect& knob = dial(Parameter::threshold);
};

TEST_F(WindowDragTest, EndsWithTheWindow) {
    XUnmapWindow(host.display(), pluginUI.window());
    XSync(host.display(), False);
    EXPECT_TRUE(pluginUI.idleUntil([&] { return pluginUI.touches == Touches{"grab 7", "let 7"}; }));
}

// The server then sends the release of the button to another window.
TEST_F(WindowDragTest, EndsWhenTheHostsWindowWasHidden) {
    host.hide();
    host.button(Button1, false);
    host.show();
    host.movePointer(knob.centerX(), knob.centerY() - 20.0);
    EXPECT_TRUE(pluginUI.idleUntil([&] { return pluginUI.touches == Touches{"grab 7", "let 7"}; }));
    EXPECT_EQ(pluginUI.writes, Writes{});
}

TEST_F(WindowDragTest, EndsWithTheUI) {
    pluginUI.close();
    EXPECT_EQ(pluginUI.touches, (Touches{"grab 7", "let 7"}));
}

TEST_F(WindowInputTest, ShiftIsFineControl) {
    const auto& knob = dial(Parameter::threshold);
    host.movePointer(knob.centerX(), knob.centerY());
    host.button(Button1, true);
    host.key(XK_Shift_L, true);
    host.movePointer(knob.centerX(), knob.centerY() - 20.0);
    host.button(Button1, false);
    host.key(XK_Shift_L, false);
    ASSERT_TRUE(untilWritten(1));
    EXPECT_EQ(pluginUI.writes, (Writes{{threshold, -17.4F}}));
}

TEST_F(WindowInputTest, TheWheelTurnsWithAndWithoutCtrl) {
    const auto& knob = dial(Parameter::threshold);
    host.movePointer(knob.centerX(), knob.centerY());
    host.button(Button4, true);
    host.button(Button4, false);
    host.key(XK_Control_L, true);
    host.button(Button5, true);
    host.button(Button5, false);
    host.key(XK_Control_L, false);
    ASSERT_TRUE(untilWritten(2));
    EXPECT_EQ(pluginUI.writes, (Writes{{threshold, -17.0F}, {threshold, -17.1F}}));
    EXPECT_EQ(pluginUI.touches, (Touches{"grab 7", "let 7", "grab 7", "let 7"}));
}

TEST_F(WindowInputTest, DoubleClickResetsToTheDefault) {
    pluginUI.send("threshold", -40.0F);
    clickIn(dial(Parameter::threshold));
    clickIn(dial(Parameter::threshold));
    ASSERT_TRUE(untilWritten(1));
    EXPECT_EQ(pluginUI.writes, (Writes{{threshold, -18.0F}}));
}

TEST_F(WindowInputTest, TypedValueIsWritten) {
    clickIn(valueText(Parameter::attack));
    pluginUI.settle();
    host.type("2.5");
    host.press(XK_Return);
    ASSERT_TRUE(untilWritten(1));
    EXPECT_EQ(pluginUI.writes, (Writes{{attack, 2.5F}}));
}

TEST_F(WindowInputTest, InvalidTextTurnsRedAndWritesNothing) {
    constexpr std::uint32_t red = 0xEF705F;
    clickIn(valueText(Parameter::attack));
    pluginUI.settle();
    EXPECT_EQ(pluginUI.pixels().count(red), 0U);
    host.type("2x");
    host.press(XK_Return);
    ASSERT_TRUE(pluginUI.idleUntil([&] { return pluginUI.pixels().count(red) > 0; }));
    host.press(XK_Escape);
    ASSERT_TRUE(pluginUI.idleUntil([&] { return pluginUI.pixels().count(red) == 0; }));
    EXPECT_EQ(pluginUI.writes, Writes{});
}

TEST_F(WindowInputTest, KeyboardReachesEveryControl) {
    clickIn(dial(Parameter::threshold));
    pluginUI.settle();
    host.press(XK_Tab);
    for (int i = 0; i < 3; ++i) {
        host.press(XK_Tab);
    }
    host.press(XK_Up);
    ASSERT_TRUE(untilWritten(1));
    EXPECT_EQ(pluginUI.writes.front().port, attack);
    EXPECT_EQ(pluginUI.writes.front().value, 12.0F);
}

TEST_F(WindowInputTest, PresetWritesEveryControlThatItSets) {
    clickIn(layout.presetName);
    pluginUI.settle();
    const auto presets = EffectWorld::shared().presets();
    // Behind Default.
    const auto index =
        1 + static_cast<std::size_t>(std::distance(presets.begin(), presets.find("Drum Punch")));
    clickIn(layout.presetEntry(index, presets.size() + 1));
    const auto& values = presets.at("Drum Punch");
    ASSERT_TRUE(untilWritten(values.size()));
    std::map<std::uint32_t, float> expected;
    for (const auto& [symbol, value] : values) {
        expected[EmbeddedPluginUI::portOf(symbol)] = value;
    }
    std::map<std::uint32_t, float> written;
    for (const auto& [port, value] : pluginUI.writes) {
        EXPECT_TRUE(written.emplace(port, value).second) << port;
    }
    EXPECT_EQ(written, expected);
    EXPECT_EQ(written.size(), orvalo::effect::parameterCount - 1);
}

TEST_F(WindowInputTest, ArrowsStepThroughThePresetsOfTheBundle) {
    clickIn(layout.nextPreset);
    ASSERT_TRUE(untilWritten(orvalo::effect::parameterCount - 1));
    EXPECT_EQ(
        pluginUI.writes.front(),
        (PortWrite{threshold, EffectWorld::shared().presets().begin()->second.at("threshold")}));
}

TEST_F(WindowInputTest, ForwardsUnusedKeysToTheHost) {
    clickIn(dial(Parameter::threshold));
    pluginUI.settle();
    host.press(XK_space);
    XEvent event;
    ASSERT_TRUE(pluginUI.idleUntil(
        [&] { return XCheckTypedWindowEvent(host.display(), host.id(), KeyPress, &event) != 0; }));
    EXPECT_EQ(XLookupKeysym(&event.xkey, 0), static_cast<KeySym>(XK_space));
    // Keys sent by the host are not sent back.
    event.xkey.window = pluginUI.window();
    XSendEvent(host.display(), pluginUI.window(), False, KeyPressMask, &event);
    XSync(host.display(), False);
    pluginUI.settle();
    EXPECT_EQ(XCheckTypedWindowEvent(host.display(), host.id(), KeyPress, &event), 0);
}

}  // namespace
