#include <gmock/gmock.h>

#include "tests/platform/plugin-ui/x11/PluginUIFixture.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using zoo::Misdeed;

constexpr unsigned long kSpace = 0x20;

class PluginUIKeyboard : public PluginUIFixture {
  protected:
    /// Opens a UI and waits until it is drawn.
    void show() {
        open();
        embedded_->onUnusedKey = [this](const X11Key& key) { unused_.push_back(key.code); };
        ASSERT_TRUE(pollUntil([this] { return record_.exposures > 0; }));
    }
    void clickIntoUI() {
        click(200, 200);
        ASSERT_TRUE(pollUntil([this] { return keyboardFocus() == toplevel_.window(); }));
    }
    /// Clicks into the UI, which then focuses its own window.
    void letUITakeFocus() {
        clickIntoUI();
        commit(Misdeed::takeKeyboard);
        ASSERT_TRUE(pollUntil([this] { return keyboardFocus() == record_.window; }));
    }

    std::vector<unsigned> unused_;  ///< The codes of the keys that the UI did not use.
};

TEST_F(PluginUIKeyboard, GetsKeysFromAClickUntilThePointerLeaves) {
    const auto inside = toplevel_.focusInside();
    ASSERT_NO_FATAL_FAILURE(show());
    ASSERT_NO_FATAL_FAILURE(clickIntoUI());
    strikeKey(kSpace);
    ASSERT_TRUE(pollUntil([this] { return record_.keys.size() == 1; }));
    EXPECT_TRUE(toplevel_.takeKeys().empty());
    movePointer(700, 500);
    ASSERT_TRUE(pollUntil([inside] { return keyboardFocus() == inside; }));
    strikeKey(kSpace);
    EXPECT_EQ(toplevel_.takeKeys(), (std::vector<unsigned long>{kSpace}));
    // Without a new click the UI gets no keys.
    movePointer(200, 200);
    runFor(20);
    strikeKey(kSpace);
    EXPECT_EQ(toplevel_.takeKeys(), (std::vector<unsigned long>{kSpace}));
    EXPECT_EQ(record_.keys.size(), 1U);
}

TEST_F(PluginUIKeyboard, GetsNoKeysFromAPointerThatRestsOrTurnsTheWheel) {
    const auto inside = toplevel_.focusInside();
    ASSERT_NO_FATAL_FAILURE(show());
    constexpr unsigned kWheelUp = 4;
    click(200, 200, kWheelUp);
    runFor(20);
    EXPECT_EQ(keyboardFocus(), inside);
    strikeKey(kSpace);
    EXPECT_EQ(toplevel_.takeKeys(), (std::vector<unsigned long>{kSpace}));
    // The UI gets no keys when it focuses its own window, either.
    commit(Misdeed::takeKeyboard);
    ASSERT_TRUE(pollUntil([inside] { return keyboardFocus() == inside; }));
    runFor(20);
    EXPECT_EQ(keyboardFocus(), inside);
    EXPECT_TRUE(record_.keys.empty());
}

TEST_F(PluginUIKeyboard, ReturnsTheFocusAtAClickElsewhere) {
    const auto inside = toplevel_.focusInside();
    ASSERT_NO_FATAL_FAILURE(show());
    ASSERT_NO_FATAL_FAILURE(letUITakeFocus());
    // The pointer leaves the UI only with the click.
    movePointer(700, 500);
    pressButton(1);
    releaseButton(1);
    ASSERT_TRUE(pollUntil([inside] { return keyboardFocus() == inside; }));
    // A click outside the toplevel does not give the UI the keyboard, either.
    click(5, 5);
    runFor(20);
    EXPECT_EQ(keyboardFocus(), inside);
}

TEST_F(PluginUIKeyboard, GetsKeysWhenItsToplevelIsFocusedAfterTheClick) {
    ASSERT_NO_FATAL_FAILURE(show());
    const Toplevel other;
    const auto elsewhere = other.focusInside();
    other.lower();
    click(200, 200);
    runFor(20);
    EXPECT_EQ(keyboardFocus(), elsewhere);
    toplevel_.focusInside();
    ASSERT_TRUE(pollUntil([this] { return keyboardFocus() == toplevel_.window(); }));
}

TEST_F(PluginUIKeyboard, GetsKeysAlsoAfterItWasRecreated) {
    toplevel_.focusInside();
    open("direct");
    unit_->allocateRenderResources(96000.0);
    ASSERT_TRUE(pollUntil([this] { return record_.instantiations == 2 && record_.width == 400; }));
    EXPECT_TRUE(waitForRectangle(record_.window, X11Rect{150, 140, 400, 300}));
    ASSERT_NO_FATAL_FAILURE(clickIntoUI());
    // The new container handles the toplevel's focus events, too.
    toplevel_.focusInside();
    ASSERT_TRUE(pollUntil([this] { return keyboardFocus() == toplevel_.window(); }));
}

TEST_F(PluginUIKeyboard, ReturnsTheFocusThatTheUIHasGrabbed) {
    const auto inside = toplevel_.focusInside();
    ASSERT_NO_FATAL_FAILURE(show());
    ASSERT_NO_FATAL_FAILURE(letUITakeFocus());
    movePointer(700, 500);
    ASSERT_TRUE(pollUntil([inside] { return keyboardFocus() == inside; }));
    ASSERT_NO_FATAL_FAILURE(letUITakeFocus());
    embedded_->setVisible(false);
    ASSERT_TRUE(pollUntil([inside] { return keyboardFocus() == inside; }));
}

TEST_F(PluginUIKeyboard, ReportsKeysThatTheUISendsOnWhileItHasTheKeyboard) {
    toplevel_.focusInside();
    ASSERT_NO_FATAL_FAILURE(show());
    const unsigned space = keycode(kSpace);
    // The UI sends its keys on with the event mask for keys, and with an empty mask.
    for (const long mask : {1L, 0L}) {
        unused_.clear();
        record_.keyMask = mask;
        ASSERT_NO_FATAL_FAILURE(clickIntoUI());
        strikeKey(kSpace);
        EXPECT_TRUE(pollUntil([&] { return unused_ == std::vector{space}; })) << mask;
        movePointer(700, 500);
        ASSERT_TRUE(pollUntil([this] { return keyboardFocus() != toplevel_.window(); }));
    }
    // A key sent while the UI has no keyboard is ignored.
    unused_.clear();
    sendKey(record_.parent, space);
    runFor(20);
    EXPECT_TRUE(unused_.empty());
}

TEST_F(PluginUIKeyboard, ReportsTheKeysOfAUIThatSendsNoneOn) {
    toplevel_.focusInside();
    ASSERT_NO_FATAL_FAILURE(show());
    const unsigned space = keycode(kSpace);
    ASSERT_NO_FATAL_FAILURE(letUITakeFocus());
    strikeKey(kSpace);
    EXPECT_TRUE(pollUntil([&] { return unused_ == std::vector{space}; }));
    // The UI gets the key, too.
    EXPECT_TRUE(pollUntil([this] { return record_.keys.size() == 1; }));
    // Its first key that it sends on is reported once, and then only those.
    record_.keyMask = 1;
    strikeKey(kSpace);
    EXPECT_TRUE(pollUntil([&] { return unused_.size() == 2 && record_.keys.size() == 2; }));
    runFor(20);
    record_.keyMask.reset();
    strikeKey(kSpace);
    EXPECT_TRUE(pollUntil([this] { return record_.keys.size() == 3; }));
    runFor(20);
    EXPECT_EQ(unused_, (std::vector{space, space}));
}

TEST_F(PluginUIKeyboard, LeavesTheKeysOfAUIThatTellsThatItSendsThem) {
    toplevel_.focusInside();
    ASSERT_NO_FATAL_FAILURE(show());
    tellOfUnusedKeys(record_.window);
    click(200, 200);
    ASSERT_TRUE(pollUntil([this] { return keyboardFocus() == record_.window; }));
    strikeKey(kSpace);
    EXPECT_TRUE(pollUntil([this] { return record_.keys.size() == 1; }));
    runFor(20);
    EXPECT_TRUE(unused_.empty());
}

TEST_F(PluginUIKeyboard, AUIThatSendsUnusedKeysKeepsTheFocusUntilAClickElsewhere) {
    const auto inside = toplevel_.focusInside();
    ASSERT_NO_FATAL_FAILURE(show());
    tellOfUnusedKeys(record_.window);
    click(200, 200);
    ASSERT_TRUE(pollUntil([this] { return keyboardFocus() == record_.window; }));
    movePointer(700, 500);
    runFor(20);
    strikeKey(kSpace);
    EXPECT_TRUE(pollUntil([this] { return record_.keys.size() == 1; }));
    EXPECT_TRUE(toplevel_.takeKeys().empty());
    pressButton(1);
    releaseButton(1);
    EXPECT_TRUE(pollUntil([inside] { return keyboardFocus() == inside; }));
}

TEST_F(PluginUIKeyboard, EntersOnlyAUIThatSendsUnusedKeys) {
    const auto inside = toplevel_.focusInside();
    ASSERT_NO_FATAL_FAILURE(show());
    EXPECT_FALSE(embedded_->enterByKey(false));
    EXPECT_EQ(keyboardFocus(), inside);
    tellOfUnusedKeys(record_.window);
    EXPECT_TRUE(embedded_->enterByKey(false));
    ASSERT_TRUE(pollUntil([this] { return keyboardFocus() == record_.window; }));
    strikeKey(kSpace);
    EXPECT_TRUE(pollUntil([this] { return record_.keys.size() == 1; }));
    embedded_->restoreFocus();
    EXPECT_TRUE(pollUntil([inside] { return keyboardFocus() == inside; }));
}

TEST_F(PluginUIKeyboard, LeavesKeysThatTheUIDoesNotSelectToTheToplevel) {
    toplevel_.focusInside();
    ASSERT_NO_FATAL_FAILURE(show());
    commit(Misdeed::ignoreKeys);
    ASSERT_NO_FATAL_FAILURE(clickIntoUI());
    strikeKey(kSpace);
    runFor(20);
    EXPECT_EQ(toplevel_.takeKeys(), (std::vector<unsigned long>{kSpace}));
    EXPECT_TRUE(unused_.empty());
    EXPECT_TRUE(record_.keys.empty());
}

TEST_F(PluginUIKeyboard, MayBeDestroyedByAnUnusedKey) {
    toplevel_.focusInside();
    ASSERT_NO_FATAL_FAILURE(show());
    record_.keyMask = 1;
    connection_ = nullptr;
    embedded_->onUnusedKey = [this](const X11Key& /*key*/) { embedded_ = nullptr; };
    ASSERT_NO_FATAL_FAILURE(clickIntoUI());
    strikeKey(kSpace);
    EXPECT_TRUE(pollUntil([this] { return embedded_ == nullptr; }));
    EXPECT_EQ(record_.cleanups, 1);
}

}  // namespace
