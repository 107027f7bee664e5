#include "effect/ui/model/EditHistory.h"

#include "effect/ui/model/KeyInput.h"
#include "effect/ui/model/PointerInput.h"
#include "tests/effect/ui/SceneFixture.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

/// Undo, redo and the comparison, by the editor that records the steps.
class EditHistoryTest : public orvalo::testing::SceneFixture {
  protected:
    EditHistoryTest() : pointer(scene, editor), keys(scene, editor) {}

    static Pointer at(const Rect& area, double up = 0.0) {
        return {.x = area.centerX(), .y = area.centerY() - up};
    }
    void press(Key key) { keys.press({.key = key}); }
    void click(const Rect& area) {
        pointer.press(at(area));
        pointer.release();
    }

    PointerInput pointer;
    KeyInput keys;
};

TEST_F(EditHistoryTest, DragIsOneStep) {
    const Rect& dial = scene.layout.cell(Parameter::threshold).dial;
    pointer.press(at(dial));
    for (const double up : {10.0, 20.0, 30.0}) {
        pointer.move(at(dial, up));
    }
    pointer.release();
    EXPECT_EQ(value(Parameter::threshold), -9.0F);
    press(Key::undo);
    EXPECT_EQ(value(Parameter::threshold), -18.0F);
    EXPECT_FALSE(scene.edits.canUndo());
    press(Key::redo);
    EXPECT_EQ(value(Parameter::threshold), -9.0F);
    EXPECT_FALSE(scene.edits.canRedo());
    EXPECT_EQ(host.values, (std::vector<float>{-15.0F, -12.0F, -9.0F, -18.0F, -9.0F}));
    EXPECT_EQ(host.calls.back(), "let threshold");
}

TEST_F(EditHistoryTest, EveryKindOfChangeIsAStep) {
    editor.setOnce(Parameter::enabled, 0.0F);
    editor.setOnce(Parameter::knee, 3.0F);
    editor.beginEntry(Parameter::ratio);
    scene.entry->entry = TextEntry("2");
    editor.commitEntry();
    editor.stepPreset(1);
    EXPECT_EQ(scene.presets.label(), "First");
    press(Key::undo);
    EXPECT_EQ(value(Parameter::ratio), 2.0F);
    EXPECT_EQ(value(Parameter::threshold), -18.0F);
    press(Key::undo);
    EXPECT_EQ(value(Parameter::ratio), 4.0F);
    press(Key::undo);
    EXPECT_EQ(value(Parameter::knee), 6.0F);
    EXPECT_EQ(scene.presets.label(), "Default");
    press(Key::undo);
    EXPECT_EQ(value(Parameter::enabled), 1.0F);
    press(Key::undo);
    for (int i = 0; i < 9; ++i) {
        press(Key::redo);
    }
    EXPECT_EQ(value(Parameter::enabled), 0.0F);
    EXPECT_EQ(value(Parameter::knee), 3.0F);
    EXPECT_EQ(scene.presets.label(), "First");
}

TEST_F(EditHistoryTest, LabelOfThePresetComesBack) {
    editor.choosePreset(1);
    editor.setOnce(Parameter::knee, 1.0F);
    editor.setOnce(Parameter::ratio, 1.5F);
    EXPECT_EQ(scene.presets.label(), "First *");
    editor.choosePreset(2);
    EXPECT_EQ(scene.presets.label(), "Second");
    press(Key::undo);
    EXPECT_EQ(scene.presets.label(), "First *");
}

TEST_F(EditHistoryTest, TurnsOfAKnobAreOneStepUntilAnotherIsTouched) {
    const Rect& knee = scene.layout.cell(Parameter::knee).dial;
    pointer.move(at(knee));
    pointer.wheel(at(knee), 1);
    pointer.wheel(at(knee), 1);
    EXPECT_EQ(value(Parameter::knee), 7.0F);
    const Rect& mix = scene.layout.cell(Parameter::mix).dial;
    pointer.move(at(mix));
    pointer.wheel(at(mix), -1);
    pointer.move(at(knee));
    pointer.wheel(at(knee), 1);
    press(Key::undo);
    EXPECT_EQ(value(Parameter::knee), 7.0F);
    press(Key::undo);
    EXPECT_EQ(value(Parameter::mix), 100.0F);
    press(Key::undo);
    EXPECT_EQ(value(Parameter::knee), 6.0F);
    // To where it was is no step.
    pointer.wheel(at(knee), 1);
    pointer.wheel(at(knee), -1);
    EXPECT_FALSE(scene.edits.canUndo());
}

TEST_F(EditHistoryTest, TurnsOnTheCurveAreOneStep) {
    pointer.move(at(scene.layout.curve));
    pointer.wheel(at(scene.layout.curve), 1);
    pointer.wheel(at(scene.layout.curve), 1);
    EXPECT_EQ(value(Parameter::knee), 7.0F);
    press(Key::undo);
    EXPECT_EQ(value(Parameter::knee), 6.0F);
}

TEST_F(EditHistoryTest, TurnsBeyondTheEndDoNotJoinOtherSteps) {
    editor.setOnce(Parameter::mix, 50.0F);
    editor.turn(Parameter::knee, 6.0F);
    editor.turn(Parameter::knee, 24.0F);
    editor.turn(Parameter::knee, 24.0F);
    press(Key::undo);
    EXPECT_EQ(value(Parameter::mix), 50.0F);
    EXPECT_EQ(value(Parameter::knee), 6.0F);
}

TEST_F(EditHistoryTest, ChangesByTheHostAreNoSteps) {
    editor.receive(Parameter::ratio, 2.0F);
    EXPECT_FALSE(scene.edits.canUndo());
    editor.setOnce(Parameter::threshold, -30.0F);
    editor.receive(Parameter::ratio, 9.0F);
    press(Key::undo);
    EXPECT_EQ(value(Parameter::threshold), -18.0F);
    EXPECT_EQ(value(Parameter::ratio), 9.0F);
}

TEST_F(EditHistoryTest, NewStepForgetsTheUndoneOnes) {
    editor.setOnce(Parameter::ratio, 2.0F);
    press(Key::undo);
    editor.setOnce(Parameter::knee, 2.0F);
    EXPECT_FALSE(scene.edits.canRedo());
    press(Key::redo);
    EXPECT_EQ(value(Parameter::ratio), 4.0F);
}

TEST_F(EditHistoryTest, KeepsTheLastSteps) {
    for (int i = 0; i < 300; ++i) {
        editor.setOnce(Parameter::threshold, -0.1F * static_cast<float>(i));
    }
    for (int i = 0; i < 300; ++i) {
        press(Key::undo);
    }
    EXPECT_EQ(value(Parameter::threshold), -0.1F * 99.0F);
}

TEST_F(EditHistoryTest, UndoWaitsForTheEndOfADrag) {
    const Rect& dial = scene.layout.cell(Parameter::threshold).dial;
    pointer.press(at(dial));
    pointer.move(at(dial, 10.0));
    press(Key::undo);
    EXPECT_EQ(value(Parameter::threshold), -15.0F);
    pointer.release();
    click(scene.layout.undo);
    EXPECT_EQ(value(Parameter::threshold), -18.0F);
    click(scene.layout.redo);
    EXPECT_EQ(value(Parameter::threshold), -15.0F);
}

TEST_F(EditHistoryTest, SwitchingComparesTwoSounds) {
    editor.choosePreset(1);
    click(scene.layout.sound);
    EXPECT_TRUE(scene.comparison.isB);
    EXPECT_EQ(scene.presets.label(), "First");
    editor.setOnce(Parameter::ratio, 2.0F);
    editor.setOnce(Parameter::enabled, 0.0F);
    EXPECT_EQ(scene.presets.label(), "First *");
    host.calls.clear();
    click(scene.layout.sound);
    EXPECT_FALSE(scene.comparison.isB);
    EXPECT_EQ(host.calls, (Calls{"grab ratio", "write ratio", "let ratio"}));
    EXPECT_EQ(value(Parameter::ratio), 8.0F);
    EXPECT_EQ(value(Parameter::enabled), 0.0F);
    EXPECT_EQ(scene.presets.label(), "First");
    click(scene.layout.sound);
    EXPECT_EQ(value(Parameter::ratio), 2.0F);
    EXPECT_EQ(scene.presets.label(), "First *");
}

TEST_F(EditHistoryTest, CopyReplacesTheOtherSound) {
    click(scene.layout.sound);
    editor.setOnce(Parameter::ratio, 2.0F);
    click(scene.layout.copySound);
    EXPECT_EQ(scene.notice, "B is copied to A");
    editor.setOnce(Parameter::ratio, 3.0F);
    click(scene.layout.sound);
    EXPECT_EQ(value(Parameter::ratio), 2.0F);
    click(scene.layout.copySound);
    EXPECT_EQ(scene.notice, "A is copied to B");
    click(scene.layout.sound);
    EXPECT_EQ(value(Parameter::ratio), 2.0F);
}

TEST_F(EditHistoryTest, ComparisonIsUndone) {
    click(scene.layout.sound);
    editor.setOnce(Parameter::ratio, 2.0F);
    click(scene.layout.sound);
    EXPECT_EQ(value(Parameter::ratio), 4.0F);
    click(scene.layout.copySound);
    press(Key::undo);
    click(scene.layout.sound);
    EXPECT_EQ(value(Parameter::ratio), 2.0F);
    press(Key::undo);
    press(Key::undo);
    EXPECT_TRUE(scene.comparison.isB);
    EXPECT_EQ(value(Parameter::ratio), 2.0F);
    press(Key::undo);
    press(Key::undo);
    EXPECT_FALSE(scene.comparison.isB);
    EXPECT_EQ(value(Parameter::ratio), 4.0F);
    EXPECT_FALSE(scene.edits.canUndo());
}

}  // namespace
