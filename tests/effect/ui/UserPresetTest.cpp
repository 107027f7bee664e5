#include "effect/ui/model/KeyInput.h"
#include "effect/ui/model/PointerInput.h"
#include "tests/effect/ui/SceneFixture.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

class UserPresetTest : public orvalo::testing::SceneFixture {
  protected:
    UserPresetTest() : pointer(scene, editor), keys(scene, editor) {
        store.users["Bass"] = {.name = "Bass",
                               .values = {{Parameter::mix, 40.0F}},
                               .description = "Of a friend",
                               .isUser = true};
        editor.readPresets();
    }

    void click(const Rect& area) {
        pointer.press({.x = area.centerX(), .y = area.centerY()});
        pointer.release();
    }
    bool press(Key key) { return keys.press({.key = key}); }
    void type(const char* text) {
        for (; *text != '\0'; ++text) {
            keys.press({.key = Key::character, .character = static_cast<unsigned char>(*text)});
        }
    }
    void save(const char* name) {
        click(scene.layout.savePreset);
        type(name);
        press(Key::enter);
    }
    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& preset : scene.presets.presets()) {
            result.push_back(preset.name);
        }
        return result;
    }
    std::size_t place(const char* name) const { return *scene.presets.find({name, true}); }

    using Names = std::vector<std::string>;
    PointerInput pointer;
    KeyInput keys;
};

TEST_F(UserPresetTest, AreListedBehindTheFactoryPresets) {
    EXPECT_EQ(names(), (Names{"Default", "First", "Second", "Bass"}));
}

TEST_F(UserPresetTest, ListHasWhatOthersSavedMeanwhile) {
    store.users["Alto"] = {.name = "Alto", .values = {{Parameter::mix, 4.0F}}, .isUser = true};
    click(scene.layout.presetName);
    EXPECT_EQ(names(), (Names{"Default", "First", "Second", "Alto", "Bass"}));
}

TEST_F(UserPresetTest, SaveUnderAName) {
    editor.setOnce(Parameter::threshold, -33.0F);
    editor.setOnce(Parameter::enabled, 0.0F);
    click(scene.layout.savePreset);
    EXPECT_EQ(scene.entryLine(), "Name of the preset: Enter saves, Escape cancels");
    type("  My Drums ");
    EXPECT_TRUE(press(Key::enter));
    EXPECT_FALSE(scene.entry);
    EXPECT_EQ(scene.presets.label(), "My Drums");
    EXPECT_EQ(names(), (Names{"Default", "First", "Second", "Bass", "My Drums"}));
    const Preset& saved = store.users.at("My Drums");
    EXPECT_TRUE(saved.isUser);
    ASSERT_EQ(saved.values.size(), parameterCount - 1);
    for (const auto& [parameter, value] : saved.values) {
        EXPECT_NE(parameter, Parameter::enabled);
        EXPECT_EQ(value, scene.values[parameter]);
    }
    // A new preset is no step of undo.
    press(Key::undo);
    EXPECT_EQ(value(Parameter::enabled), 1.0F);
    EXPECT_TRUE(store.users.contains("My Drums"));
}

TEST_F(UserPresetTest, EscapeAndAPressElsewhereSaveNothing) {
    click(scene.layout.savePreset);
    type("Drums");
    press(Key::escape);
    EXPECT_FALSE(scene.entry);
    click(scene.layout.savePreset);
    type("Drums");
    click(scene.layout.curve);
    EXPECT_FALSE(scene.entry);
    EXPECT_EQ(store.users.size(), 1U);
}

TEST_F(UserPresetTest, UnusableNamesAreSaidAndStay) {
    save("");
    EXPECT_EQ(scene.entryLine(), "A preset needs a name");
    press(Key::escape);
    save("   ");
    EXPECT_EQ(scene.entryLine(), "A preset needs a name");
    press(Key::escape);
    for (const char* name : {"Default", "First"}) {
        save(name);
        EXPECT_EQ(scene.entryLine(),
                  "\"" + std::string(name) + "\" is a factory preset: choose another name");
        ASSERT_TRUE(scene.entry);
        EXPECT_EQ(scene.entry->entry.text(), name);
        press(Key::escape);
    }
    store.complaint = "Not saved: No space left on device";
    save("Full");
    EXPECT_EQ(scene.entryLine(), "Not saved: No space left on device");
    EXPECT_FALSE(scene.edits.canUndo());
    EXPECT_EQ(store.users.size(), 1U);
}

TEST_F(UserPresetTest, SecondEnterReplacesAPreset) {
    editor.setOnce(Parameter::mix, 77.0F);
    save("Bass");
    EXPECT_EQ(scene.entryLine(), "\"Bass\" exists: Enter again replaces it");
    // Another name in between is asked about anew.
    press(Key::backspace);
    type("s");
    press(Key::enter);
    EXPECT_EQ(scene.entryLine(), "\"Bass\" exists: Enter again replaces it");
    EXPECT_EQ(store.users.at("Bass").values.size(), 1U);
    press(Key::enter);
    EXPECT_FALSE(scene.entry);
    EXPECT_EQ(scene.notice, "\"Bass\" is replaced: Ctrl+Z restores it");
    EXPECT_EQ(store.users.at("Bass").values.size(), parameterCount - 1);
    press(Key::undo);
    EXPECT_EQ(scene.notice, "\"Bass\" is restored");
    EXPECT_EQ(store.users.at("Bass").values.size(), 1U);
    EXPECT_EQ(store.users.at("Bass").description, "Of a friend");
    EXPECT_EQ(value(Parameter::mix), 77.0F);
    press(Key::redo);
    EXPECT_EQ(store.users.at("Bass").values.size(), parameterCount - 1);
}

TEST_F(UserPresetTest, ChosenPresetIsReplacedAtOnce) {
    editor.choosePreset(place("Bass"));
    editor.setOnce(Parameter::knee, 1.0F);
    editor.setOnce(Parameter::mix, 41.0F);
    EXPECT_EQ(scene.presets.label(), "Bass *");
    click(scene.layout.savePreset);
    EXPECT_EQ(scene.entry->entry.text(), "Bass");
    press(Key::enter);
    EXPECT_FALSE(scene.entry);
    EXPECT_EQ(scene.presets.label(), "Bass");
    EXPECT_EQ(store.users.at("Bass").values.size(), parameterCount - 1);
}

TEST_F(UserPresetTest, Rename) {
    editor.choosePreset(place("Bass"));
    click(scene.layout.presetName);
    EXPECT_TRUE(press(Key::rename));
    EXPECT_FALSE(scene.list);
    EXPECT_EQ(scene.entryLine(), "New name: Enter renames, Escape cancels");
    type("First");
    press(Key::enter);
    EXPECT_EQ(scene.entryLine(), "\"First\" is a factory preset: choose another name");
    press(Key::selectAll);
    type("Contrabass");
    press(Key::enter);
    EXPECT_FALSE(scene.entry);
    EXPECT_EQ(names(), (Names{"Default", "First", "Second", "Contrabass"}));
    EXPECT_EQ(scene.presets.label(), "Contrabass");
    EXPECT_EQ(store.users.at("Contrabass").description, "Of a friend");
    press(Key::undo);
    EXPECT_EQ(names(), (Names{"Default", "First", "Second", "Bass"}));
    press(Key::redo);
    EXPECT_EQ(names(), (Names{"Default", "First", "Second", "Contrabass"}));
}

TEST_F(UserPresetTest, RenameDoesNotReplaceAnother) {
    save("Drums");
    const std::size_t count = names().size();
    click(scene.layout.presetName);
    click(scene.layout.renameEntry(place("Drums"), count));
    type("Bass");
    press(Key::enter);
    press(Key::enter);
    EXPECT_EQ(scene.entryLine(), "\"Bass\" exists: choose another name");
    // The same name changes nothing.
    press(Key::selectAll);
    type("Drums");
    press(Key::enter);
    EXPECT_FALSE(scene.entry);
    EXPECT_FALSE(scene.edits.canUndo());
}

TEST_F(UserPresetTest, DeleteWithUndo) {
    click(scene.layout.presetName);
    const Rect button = scene.layout.deleteEntry(place("Bass"), 4);
    pointer.move({.x = button.centerX(), .y = button.centerY()});
    EXPECT_EQ(scene.list, 3U);
    click(button);
    EXPECT_EQ(names(), (Names{"Default", "First", "Second"}));
    EXPECT_EQ(scene.notice, "\"Bass\" is deleted: Ctrl+Z restores it");
    EXPECT_EQ(scene.list, 2U);
    press(Key::undo);
    EXPECT_EQ(names(), (Names{"Default", "First", "Second", "Bass"}));
    EXPECT_EQ(scene.list, 3U);
    EXPECT_EQ(store.users.at("Bass").description, "Of a friend");
    press(Key::erase);
    EXPECT_TRUE(store.users.empty());
    press(Key::escape);
    press(Key::undo);
    press(Key::redo);
    EXPECT_TRUE(store.users.empty());
    EXPECT_EQ(scene.notice, "\"Bass\" is deleted");
}

TEST_F(UserPresetTest, FactoryPresetsCannotBeDeletedOrRenamed) {
    click(scene.layout.presetName);
    for (const std::size_t index : {0U, 1U}) {
        editor.markEntry(index);
        press(Key::rename);
        press(Key::erase);
        EXPECT_EQ(scene.list, index);
        EXPECT_EQ(names().size(), 4U);
    }
    // Where a user's preset has its buttons, a factory preset has none.
    click(scene.layout.deleteEntry(1, 4));
    EXPECT_EQ(scene.presets.label(), "First");
}

TEST_F(UserPresetTest, RefusedDeletionIsSaid) {
    store.complaint = "Not deleted: Permission denied";
    click(scene.layout.presetName);
    press(Key::end);
    press(Key::erase);
    EXPECT_EQ(scene.notice, "Not deleted: Permission denied");
    EXPECT_FALSE(scene.edits.canUndo());
    EXPECT_EQ(names().size(), 4U);
}

TEST_F(UserPresetTest, DefaultResetsEverythingButTheSwitch) {
    editor.setOnce(Parameter::enabled, 0.0F);
    editor.setOnce(Parameter::mix, 10.0F);
    editor.setOnce(Parameter::midiChannel, 5.0F);
    click(scene.layout.presetName);
    press(Key::home);
    press(Key::enter);
    EXPECT_EQ(value(Parameter::mix), 100.0F);
    EXPECT_EQ(value(Parameter::midiChannel), 0.0F);
    EXPECT_EQ(value(Parameter::enabled), 0.0F);
    EXPECT_EQ(scene.presets.label(), "Default");
    press(Key::undo);
    EXPECT_EQ(value(Parameter::mix), 10.0F);
    EXPECT_EQ(value(Parameter::midiChannel), 5.0F);
}

}  // namespace
