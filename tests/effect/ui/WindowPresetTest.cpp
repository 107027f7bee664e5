#include <X11/keysym.h>

#include <array>

#include "effect/ui/model/Scene.h"
#include "tests/effect/EffectState.h"
#include "tests/effect/ui/WindowFixture.h"

namespace {

using namespace orvalo::testing;
using orvalo::effect::ui::Rect;

constexpr std::uint32_t mix = 13;
const std::size_t factoryCount = EffectWorld::shared().presets().size();

/// The user's presets, undo and the comparison in the window.
class WindowPresetTest : public EmbeddedUIFixture {
  protected:
    void clickIn(const Rect& area) {
        host.click(area.centerX(), area.centerY());
        pluginUI.settle();
    }
    void pressWith(KeySym modifier, KeySym symbol) {
        host.key(modifier, true);
        host.press(symbol);
        host.key(modifier, false);
    }
    void save(const char* name) {
        clickIn(layout.savePreset);
        host.type(name);
        host.press(XK_Return);
        pluginUI.settle();
    }
    /// What any host finds in the user's folder.
    std::map<std::string, EffectState::Values> presets() const {
        return EffectState::presets((home.path() / ".lv2").string() + ":" + EFFECT_LV2_PATH);
    }
    bool untilPreset(const std::string& name, bool isThere) {
        return pluginUI.idleUntil([&] { return presets().contains(name) == isThere; });
    }
    bool untilWrittenLast(float value) {
        return pluginUI.idleUntil([&] {
            return !pluginUI.writes.empty() && pluginUI.writes.back() == PortWrite{mix, value};
        });
    }
    /// The place of the only preset of the user's.
    static std::size_t place() { return factoryCount + 1; }
    static std::size_t count() { return factoryCount + 2; }
};

TEST_F(WindowPresetTest, SavedPresetIsFoundByHostsAndChosenAgain) {
    pluginUI.send("mix", 31.0F);
    save("My Sound");
    ASSERT_TRUE(untilPreset("My Sound", true));
    EXPECT_EQ(presets().at("My Sound").at("mix"), 31.0F);
    EXPECT_EQ(presets().at("My Sound").size(), orvalo::effect::parameterCount - 1);
    EXPECT_EQ(pluginUI.writes, Writes{});
    pluginUI.send("mix", 80.0F);
    clickIn(layout.presetName);
    clickIn(layout.presetEntry(place(), count()));
    ASSERT_TRUE(untilWritten(orvalo::effect::parameterCount - 1));
    EXPECT_TRUE(std::find(pluginUI.writes.begin(), pluginUI.writes.end(), PortWrite{mix, 31.0F}) !=
                pluginUI.writes.end());
}

TEST_F(WindowPresetTest, NameHasLettersOfTheKeyboardsLanguage) {
    std::array<KeySym, 4> letters{XK_adiaeresis, XK_aogonek, XK_Cyrillic_ya, 0x1000000 | 0x1EBF};
    // On keys that the server's keyboard hardly uses.
    int least = 0;
    int most = 0;
    XDisplayKeycodes(host.display(), &least, &most);
    XChangeKeyboardMapping(host.display(), most - 3, 1, letters.data(), 4);
    clickIn(layout.savePreset);
    host.type("B");
    for (const KeySym letter : letters) {
        host.press(letter);
    }
    host.press(XK_Return);
    ASSERT_TRUE(untilPreset("B\u00e4\u0105\u044f\u1ebf", true));
}

TEST_F(WindowPresetTest, PresetSavedByAHostIsInTheListWhenItOpens) {
    EffectState::save({{"mix", 12.0F}}, "Theirs", home.path() / ".lv2/Orvalo_Theirs.preset.lv2",
                      "Theirs.ttl");
    clickIn(layout.presetName);
    clickIn(layout.presetEntry(place(), count()));
    ASSERT_TRUE(untilWritten(orvalo::effect::parameterCount - 1));
    EXPECT_TRUE(std::find(pluginUI.writes.begin(), pluginUI.writes.end(), PortWrite{mix, 12.0F}) !=
                pluginUI.writes.end());
}

TEST_F(WindowPresetTest, EscapeCancelsAndAnEmptyNameTurnsRed) {
    constexpr std::uint32_t red = 0xEF705F;
    const Pixels before = pluginUI.pixels();
    save("");
    ASSERT_TRUE(pluginUI.idleUntil([&] { return pluginUI.pixels().count(red) > 0; }));
    host.type("x");
    host.press(XK_Escape);
    host.movePointer(799.0, 599.0);
    ASSERT_TRUE(pluginUI.idleUntil([&] { return pluginUI.pixels() == before; }));
    EXPECT_EQ(presets().size(), factoryCount);
}

TEST_F(WindowPresetTest, RenameDeleteAndUndo) {
    pluginUI.send("mix", 31.0F);
    save("One");
    ASSERT_TRUE(untilPreset("One", true));
    clickIn(layout.presetName);
    host.press(XK_F2);
    host.type("Two");
    host.press(XK_Return);
    ASSERT_TRUE(untilPreset("Two", true));
    EXPECT_FALSE(presets().contains("One"));
    clickIn(layout.presetName);
    clickIn(layout.deleteEntry(place(), count()));
    ASSERT_TRUE(untilPreset("Two", false));
    pressWith(XK_Control_L, XK_z);
    ASSERT_TRUE(untilPreset("Two", true));
    EXPECT_EQ(presets().at("Two").at("mix"), 31.0F);
    host.press(XK_Escape);
    pressWith(XK_Control_L, XK_z);
    ASSERT_TRUE(untilPreset("One", true));
}

TEST_F(WindowPresetTest, UndoAndRedoByKeysAndButtons) {
    const Rect& knob = dial(Parameter::mix);
    host.movePointer(knob.centerX(), knob.centerY());
    host.button(Button1, true);
    for (const double way : {20.0, 40.0, 60.0}) {
        host.movePointer(knob.centerX(), knob.centerY() + way);
        pluginUI.settle();
    }
    host.button(Button1, false);
    ASSERT_TRUE(untilWrittenLast(70.0F));
    pressWith(XK_Control_L, XK_z);
    ASSERT_TRUE(untilWrittenLast(100.0F));
    pressWith(XK_Control_L, XK_Z);
    ASSERT_TRUE(untilWrittenLast(70.0F));
    clickIn(layout.undo);
    ASSERT_TRUE(untilWrittenLast(100.0F));
    clickIn(layout.redo);
    ASSERT_TRUE(untilWrittenLast(70.0F));
}

TEST_F(WindowPresetTest, ComparisonSwitchesAndCopies) {
    clickIn(layout.sound);
    const Rect& knob = dial(Parameter::mix);
    host.movePointer(knob.centerX(), knob.centerY());
    host.button(Button5, true);
    host.button(Button5, false);
    ASSERT_TRUE(untilWrittenLast(95.0F));
    const Pixels b = pluginUI.pixels().part(layout.sound);
    clickIn(layout.sound);
    ASSERT_TRUE(untilWrittenLast(100.0F));
    EXPECT_NE(pluginUI.pixels().part(layout.sound), b);
    clickIn(layout.sound);
    ASSERT_TRUE(untilWrittenLast(95.0F));
    clickIn(layout.copySound);
    clickIn(layout.sound);
    clickIn(layout.sound);
    EXPECT_EQ(pluginUI.writes.size(), 3U);
}

TEST_F(WindowPresetTest, HeaderIsReachedByTab) {
    pluginUI.send("mix", 31.0F);
    clickIn(dial(Parameter::threshold));
    // Shows the focus, then: the switch, copy, A or B, save.
    host.press(XK_Tab);
    for (int i = 0; i < 4; ++i) {
        pressWith(XK_Shift_L, XK_Tab);
    }
    host.press(XK_space);
    pluginUI.settle();
    host.type("By keys");
    host.press(XK_Return);
    ASSERT_TRUE(untilPreset("By keys", true));
}

}  // namespace
