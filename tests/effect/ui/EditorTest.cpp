#include "tests/effect/ui/SceneFixture.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

class EditorTest : public orvalo::testing::SceneFixture {};

TEST_F(EditorTest, WritesOnlyWhatHasChanged) {
    editor.set(Parameter::threshold, -18.0F);
    EXPECT_EQ(host.calls, Calls{});
    EXPECT_FALSE(scene.isChanged());
    editor.set(Parameter::threshold, -12.0F);
    EXPECT_EQ(host.calls, Calls{"write threshold"});
    EXPECT_EQ(host.values, std::vector<float>{-12.0F});
    EXPECT_TRUE(isTouched(Parameter::threshold));
    EXPECT_TRUE(isTouched(Part::curve));
    EXPECT_FALSE(isTouched(Parameter::ratio));
}

TEST_F(EditorTest, WhatIsSetOnceIsHeldForThat) {
    editor.setOnce(Parameter::ratio, 2.0F);
    EXPECT_EQ(host.calls, (Calls{"grab ratio", "write ratio", "let ratio"}));
}

TEST_F(EditorTest, TakesTheHostsValuesWithoutAnEcho) {
    editor.receive(Parameter::ratio, 2.0F);
    EXPECT_EQ(value(Parameter::ratio), 2.0F);
    EXPECT_TRUE(isTouched(Parameter::ratio));
    scene.drawn();
    editor.receive(Parameter::ratio, 2.0F);
    EXPECT_FALSE(scene.isChanged());
    EXPECT_EQ(host.calls, Calls{});
}

TEST_F(EditorTest, AHeldParameterKeepsTheUsersValue) {
    editor.hold(Parameter::ratio);
    editor.set(Parameter::ratio, 3.0F);
    editor.receive(Parameter::ratio, 19.0F);
    editor.receive(Parameter::knee, 1.0F);
    EXPECT_EQ(value(Parameter::ratio), 3.0F);
    EXPECT_EQ(value(Parameter::knee), 1.0F);
    editor.release();
    editor.receive(Parameter::ratio, 19.0F);
    EXPECT_EQ(value(Parameter::ratio), 19.0F);
    EXPECT_EQ(host.calls, (Calls{"grab ratio", "write ratio", "let ratio"}));
}

TEST_F(EditorTest, APresetWritesAllThatItSets) {
    editor.choosePreset(1);
    // The ratio was 4 before: it is written all the same.
    EXPECT_EQ(host.calls, (Calls{"grab threshold", "write threshold", "let threshold", "grab ratio",
                                 "write ratio", "let ratio"}));
    EXPECT_EQ(host.values, (std::vector<float>{-30.0F, 4.0F}));
    EXPECT_EQ(scene.presets.label(), "Second");
    EXPECT_TRUE(isTouched(Part::header));
}

TEST_F(EditorTest, AChangeMarksThePresetAsChanged) {
    editor.choosePreset(0);
    scene.drawn();
    editor.set(Parameter::ratio, 7.0F);
    EXPECT_EQ(scene.presets.label(), "First *");
    EXPECT_TRUE(isTouched(Part::header));
    editor.receive(Parameter::ratio, 8.0F);
    EXPECT_EQ(scene.presets.label(), "First");
}

TEST_F(EditorTest, SwitchingOffChangesTheWholePicture) {
    editor.receive(Parameter::enabled, 0.0F);
    EXPECT_TRUE(scene.allChanged);
}

TEST_F(EditorTest, ATypedValueIsWrittenExactly) {
    editor.beginEntry(Parameter::threshold);
    EXPECT_EQ(scene.entry->entry.text(), "-18.0 dB");
    scene.entry->entry = TextEntry("-12.34");
    EXPECT_TRUE(editor.commitEntry());
    EXPECT_FALSE(scene.entry);
    EXPECT_EQ(host.values, std::vector<float>{-12.34F});
    EXPECT_EQ(host.calls, (Calls{"grab threshold", "write threshold", "let threshold"}));
}

TEST_F(EditorTest, BadTextKeepsTheValueAndTheText) {
    editor.beginEntry(Parameter::threshold);
    scene.entry->entry = TextEntry("loud");
    EXPECT_FALSE(editor.commitEntry());
    ASSERT_TRUE(scene.entry);
    EXPECT_EQ(scene.entry->entry.text(), "loud");
    EXPECT_EQ(scene.entry->complaint, "\"loud\" is no value in dB");
    EXPECT_EQ(value(Parameter::threshold), -18.0F);
    EXPECT_EQ(host.calls, Calls{});
    editor.entryChanged();
    EXPECT_EQ(scene.entry->complaint, "");
    editor.cancelEntry();
    EXPECT_FALSE(scene.entry);
}

TEST_F(EditorTest, WithoutPresetsThereIsNothingToChoose) {
    scene.presets = PresetChoice();
    editor.openList();
    EXPECT_FALSE(scene.list);
    editor.stepPreset(1);
    EXPECT_EQ(host.calls, Calls{});
}

}  // namespace
