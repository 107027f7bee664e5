#include "effect/ui/model/KeyInput.h"

#include "tests/effect/ui/SceneFixture.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

class KeyInputTest : public orvalo::testing::SceneFixture {
  protected:
    KeyInputTest() : input(scene, editor) { editor.setHasKeyboard(true); }

    bool press(Key key, bool fine = false) {
        return input.press({.key = key, .character = 0, .fine = fine});
    }
    bool type(const char* text) {
        bool used = true;
        for (; *text != '\0'; ++text) {
            used = input.press({.key = Key::character,
                                .character = static_cast<unsigned char>(*text),
                                .fine = false}) &&
                   used;
        }
        return used;
    }
    void focusOn(Parameter parameter) { editor.focus(focusOf(parameter), true); }

    KeyInput input;
};

TEST_F(KeyInputTest, TabShowsTheFocusAndMovesThroughTheControls) {
    EXPECT_TRUE(press(Key::tab));
    EXPECT_TRUE(scene.showsFocus);
    EXPECT_EQ(scene.focusedControl(), Parameter::threshold);
    press(Key::tab);
    EXPECT_EQ(scene.focusedControl(), Parameter::ratio);
    press(Key::backTab);
    press(Key::backTab);
    EXPECT_EQ(scene.focusedControl(), Parameter::enabled);
    press(Key::backTab);
    EXPECT_EQ(scene.focus, static_cast<std::size_t>(Focus::copySound));
}

TEST_F(KeyInputTest, TabLeavesAtTheEnds) {
    input.enter(false);
    for (const std::size_t place : scene.tabOrder()) {
        EXPECT_EQ(scene.focus, place);
        EXPECT_TRUE(scene.showsFocus);
        EXPECT_EQ(press(Key::tab), place != metersFocus);
    }
    EXPECT_FALSE(scene.showsFocus);
    // If the host does not take the key, the next one starts again.
    EXPECT_TRUE(press(Key::tab));
    EXPECT_EQ(scene.focus, 0U);
    EXPECT_TRUE(scene.showsFocus);
    EXPECT_FALSE(press(Key::backTab));
    EXPECT_FALSE(scene.showsFocus);
    input.enter(true);
    EXPECT_EQ(scene.focus, metersFocus);
    EXPECT_TRUE(press(Key::backTab));
    EXPECT_EQ(scene.focus, historyFocus);
}

TEST_F(KeyInputTest, KeysChooseTheSpanAndResetTheMeters) {
    editor.focus(historyFocus, true);
    EXPECT_TRUE(type(" "));
    EXPECT_EQ(scene.history.span(), 2U);
    EXPECT_TRUE(press(Key::left));
    EXPECT_TRUE(press(Key::left));
    EXPECT_EQ(scene.history.span(), 0U);
    scene.meterMemory.update({.input = 1.0F}, 1.0F, 0.0);
    editor.focus(metersFocus, true);
    EXPECT_TRUE(type(" "));
    EXPECT_FALSE(scene.meterMemory.hasInputClipped());
    EXPECT_EQ(scene.meterMemory.truePeak(), Levels::lowest);
}

TEST_F(KeyInputTest, ArrowsTurnTheFocusedKnob) {
    focusOn(Parameter::threshold);
    EXPECT_TRUE(press(Key::up));
    EXPECT_TRUE(press(Key::left));
    EXPECT_TRUE(press(Key::down, true));
    EXPECT_TRUE(press(Key::pageDown));
    EXPECT_TRUE(press(Key::home));
    EXPECT_TRUE(press(Key::end));
    EXPECT_TRUE(press(Key::erase));
    EXPECT_EQ(host.values,
              (std::vector<float>{-17.0F, -18.0F, -18.1F, -28.0F, -60.0F, 0.0F, -18.0F}));
    EXPECT_EQ(host.calls.front(), "grab threshold");
    EXPECT_EQ(host.calls.back(), "let threshold");
}

TEST_F(KeyInputTest, EnterStartsAndCommitsATypedValue) {
    focusOn(Parameter::ratio);
    EXPECT_TRUE(press(Key::enter));
    EXPECT_TRUE(type("2.5:1"));
    EXPECT_TRUE(press(Key::enter));
    EXPECT_EQ(host.values, std::vector<float>{2.5F});
    EXPECT_FALSE(scene.entry);
}

TEST_F(KeyInputTest, DigitStartsTypingAValue) {
    focusOn(Parameter::threshold);
    EXPECT_TRUE(type("-24"));
    EXPECT_EQ(scene.entry->entry.text(), "-24");
    EXPECT_TRUE(press(Key::tab));
    EXPECT_EQ(value(Parameter::threshold), -24.0F);
    EXPECT_EQ(scene.focusedControl(), Parameter::ratio);
}

TEST_F(KeyInputTest, EscapeCancels) {
    focusOn(Parameter::threshold);
    type("-24");
    EXPECT_TRUE(press(Key::escape));
    EXPECT_FALSE(scene.entry);
    EXPECT_EQ(host.calls, Calls{});
    EXPECT_FALSE(press(Key::escape));
}

TEST_F(KeyInputTest, InvalidTextStaysWithItsComplaintUntilItIsEdited) {
    focusOn(Parameter::threshold);
    type("-2x");
    press(Key::enter);
    ASSERT_TRUE(scene.entry);
    EXPECT_EQ(scene.entry->complaint, "\"-2x\" is not a value in dB");
    press(Key::backspace);
    EXPECT_EQ(scene.entry->complaint, "");
    press(Key::enter);
    EXPECT_EQ(host.values, std::vector<float>{-2.0F});
}

TEST_F(KeyInputTest, SpaceBelongsToTheHostUnlessAButtonHasVisibleFocus) {
    focusOn(Parameter::threshold);
    EXPECT_FALSE(type(" "));
    EXPECT_FALSE(type("p"));
    focusOn(Parameter::enabled);
    EXPECT_TRUE(type(" "));
    EXPECT_EQ(host.values, std::vector<float>{0.0F});
    // The focus after a click is not visible.
    for (const std::size_t place : {scene.focus, static_cast<std::size_t>(Focus::presetName),
                                    static_cast<std::size_t>(Focus::nextPreset)}) {
        editor.focus(place, false);
        EXPECT_FALSE(type(" "));
    }
    EXPECT_EQ(host.values, std::vector<float>{0.0F});
}

TEST_F(KeyInputTest, KeyboardChoosesPresets) {
    editor.focus(static_cast<std::size_t>(Focus::presetName), true);
    EXPECT_TRUE(press(Key::right));
    EXPECT_EQ(scene.presets.label(), "First");
    EXPECT_TRUE(press(Key::enter));
    EXPECT_EQ(scene.list, 1U);
    press(Key::up);
    press(Key::up);
    EXPECT_EQ(scene.list, 2U);
    press(Key::down);
    EXPECT_EQ(scene.list, 0U);
    press(Key::end);
    EXPECT_TRUE(press(Key::enter));
    EXPECT_FALSE(scene.list);
    EXPECT_EQ(scene.presets.label(), "Second");
    press(Key::down);
    EXPECT_EQ(scene.list, 2U);
    press(Key::home);
    EXPECT_TRUE(press(Key::escape));
    EXPECT_FALSE(scene.list);
    EXPECT_EQ(scene.presets.label(), "Second");
    editor.focus(static_cast<std::size_t>(Focus::previousPreset), true);
    EXPECT_TRUE(press(Key::enter));
    EXPECT_EQ(scene.presets.label(), "First");
}

TEST_F(KeyInputTest, MarkedEntryOfALongListIsShown) {
    for (int i = 0; i < 97; ++i) {
        store.factory.push_back({"P" + std::to_string(i), {{Parameter::mix, 1.0F}}});
    }
    editor.openList();
    const auto isShown = [&] { return !scene.layout.presetEntry(*scene.list, 100).isEmpty(); };
    press(Key::up);
    EXPECT_EQ(scene.list, 99U);
    EXPECT_TRUE(isShown());
    for (int i = 0; i < 100; ++i) {
        press(Key::up);
        EXPECT_TRUE(isShown()) << *scene.list;
    }
    press(Key::home);
    EXPECT_TRUE(isShown());
    press(Key::pageDown);
    EXPECT_EQ(scene.list, 10U);
    press(Key::pageUp);
    press(Key::pageUp);
    EXPECT_EQ(scene.list, 0U);
    press(Key::end);
    press(Key::pageDown);
    EXPECT_EQ(scene.list, 99U);
    EXPECT_TRUE(isShown());
}

}  // namespace
