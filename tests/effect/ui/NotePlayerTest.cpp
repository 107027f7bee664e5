#include "effect/ui/model/NotePlayer.h"

#include "effect/ui/model/GraphAreas.h"
#include "effect/ui/model/KeyInput.h"
#include "effect/ui/model/PointerInput.h"
#include "tests/effect/ui/SceneFixture.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

using Messages = std::vector<std::array<std::uint8_t, 3>>;

class NotePlayerTest : public orvalo::testing::SceneFixture {
  protected:
    static Keystroke key(char character) {
        return {.key = Key::character,
                .character = static_cast<char32_t>(character),
                .fine = false,
                .code = static_cast<std::uint32_t>(character)};
    }

    PointerInput pointer{scene, editor};
    KeyInput keys{scene, editor};
};

TEST_F(NotePlayerTest, PadIsLouderTheHigherItIsPressed) {
    const Rect pad = padAreas(scene.layout).pad;
    for (const double height : {0.999, 0.5, 0.001}) {
        pointer.press({.x = pad.centerX(), .y = pad.bottom() - height * pad.height});
        EXPECT_GT(scene.padVelocity, 0);
        pointer.release();
        EXPECT_EQ(scene.padVelocity, 0);
    }
    EXPECT_EQ(host.sent, (Messages{{0x90, 36, 127},
                                   {0x80, 36, 0},
                                   {0x90, 36, 64},
                                   {0x80, 36, 0},
                                   {0x90, 36, 1},
                                   {0x80, 36, 0}}));
}

TEST_F(NotePlayerTest, KeysPlayAnOctaveWhileTheyAreHeld) {
    for (const char character : std::string("awsedftgyhujk")) {
        EXPECT_TRUE(keys.press(key(character)));
    }
    EXPECT_TRUE(scene.heldNoteKeys.all());
    Messages expected;
    for (std::uint8_t note = 48; note <= 60; ++note) {
        expected.push_back({0x90, note, 100});
    }
    EXPECT_EQ(host.sent, expected);
    // A repeated press of a held key.
    EXPECT_TRUE(keys.press(key('s')));
    EXPECT_EQ(host.sent, expected);
    EXPECT_TRUE(keys.release('s'));
    EXPECT_FALSE(keys.release('s'));
    EXPECT_EQ(host.sent.back(), (std::array<std::uint8_t, 3>{0x80, 50, 0}));
    editor.notes().releaseKeys();
    EXPECT_TRUE(scene.heldNoteKeys.none());
    EXPECT_EQ(host.sent.size(), 26U);
}

TEST_F(NotePlayerTest, ReleaseFollowsTheKeyWhateverItsCharacterIsThen) {
    EXPECT_TRUE(keys.press({.key = Key::character, .character = 'A', .fine = true, .code = 38}));
    EXPECT_TRUE(keys.release(38));
    EXPECT_EQ(host.sent, (Messages{{0x90, 48, 100}, {0x80, 48, 0}}));
}

TEST_F(NotePlayerTest, NotesEndOnTheChannelThatTheyBeganOn) {
    editor.receive(Parameter::midiChannel, 5.0F);
    keys.press(key('a'));
    editor.receive(Parameter::midiChannel, 2.0F);
    keys.release('a');
    EXPECT_EQ(host.sent, (Messages{{0x94, 48, 100}, {0x84, 48, 0}}));
}

TEST_F(NotePlayerTest, LettersAreTextInATextField) {
    editor.beginEntry(Parameter::threshold);
    keys.press(key('a'));
    EXPECT_EQ(host.sent, Messages{});
    EXPECT_EQ(scene.entry->entry.text(), "a");
}

TEST_F(NotePlayerTest, SpacePlaysTheFocusedPad) {
    editor.focus(padFocus, false);
    EXPECT_FALSE(keys.press(key(' ')));
    editor.focus(padFocus, true);
    EXPECT_TRUE(keys.press(key(' ')));
    EXPECT_TRUE(keys.release(' '));
    EXPECT_EQ(host.sent, (Messages{{0x90, 36, 100}, {0x80, 36, 0}}));
}

}  // namespace
