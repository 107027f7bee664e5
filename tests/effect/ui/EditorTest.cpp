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

TEST_F(EditorTest, SetOnceGrabsAndReleasesTheParameter) {
    editor.setOnce(Parameter::ratio, 2.0F);
    EXPECT_EQ(host.calls, (Calls{"grab ratio", "write ratio", "let ratio"}));
}

TEST_F(EditorTest, TakesTheHostsValuesWithoutWritingThemBack) {
    editor.receive(Parameter::ratio, 2.0F);
    EXPECT_EQ(value(Parameter::ratio), 2.0F);
    EXPECT_TRUE(isTouched(Parameter::ratio));
    scene.markDrawn();
    editor.receive(Parameter::ratio, 2.0F);
    EXPECT_FALSE(scene.isChanged());
    EXPECT_EQ(host.calls, Calls{});
}

TEST_F(EditorTest, HeldParameterKeepsTheUsersValue) {
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

TEST_F(EditorTest, PresetWritesAllItsValues) {
    editor.choosePreset(2);
    // The ratio is 4 already and is written nevertheless.
    EXPECT_EQ(host.calls, (Calls{"grab threshold", "write threshold", "let threshold", "grab ratio",
                                 "write ratio", "let ratio"}));
    EXPECT_EQ(host.values, (std::vector<float>{-30.0F, 4.0F}));
    EXPECT_EQ(scene.presets.label(), "Second");
    EXPECT_TRUE(isTouched(Part::header));
}

TEST_F(EditorTest, ChangeMarksThePresetAsChanged) {
    editor.choosePreset(1);
    scene.markDrawn();
    editor.set(Parameter::ratio, 7.0F);
    EXPECT_EQ(scene.presets.label(), "First *");
    EXPECT_TRUE(isTouched(Part::header));
    editor.receive(Parameter::ratio, 8.0F);
    EXPECT_EQ(scene.presets.label(), "First");
}

TEST_F(EditorTest, BypassRedrawsTheWholePicture) {
    editor.receive(Parameter::enabled, 0.0F);
    EXPECT_TRUE(scene.allChanged);
}

TEST_F(EditorTest, TypedValueIsWrittenExactly) {
    editor.beginEntry(Parameter::threshold);
    EXPECT_EQ(scene.entry->entry.text(), "-18.0 dB");
    scene.entry->entry = TextEntry("-12.34");
    EXPECT_TRUE(editor.commitEntry());
    EXPECT_FALSE(scene.entry);
    EXPECT_EQ(host.values, std::vector<float>{-12.34F});
    EXPECT_EQ(host.calls, (Calls{"grab threshold", "write threshold", "let threshold"}));
}

TEST_F(EditorTest, InvalidTextKeepsValueAndText) {
    editor.beginEntry(Parameter::threshold);
    scene.entry->entry = TextEntry("loud");
    EXPECT_FALSE(editor.commitEntry());
    ASSERT_TRUE(scene.entry);
    EXPECT_EQ(scene.entry->entry.text(), "loud");
    EXPECT_EQ(scene.entry->complaint, "\"loud\" is not a value in dB");
    EXPECT_EQ(value(Parameter::threshold), -18.0F);
    EXPECT_EQ(host.calls, Calls{});
    editor.entryChanged();
    EXPECT_EQ(scene.entry->complaint, "");
    editor.cancelEntry();
    EXPECT_FALSE(scene.entry);
}

}  // namespace
