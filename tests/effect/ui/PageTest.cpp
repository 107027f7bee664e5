// The pages of controls: tabs, switches and choices, by pointer and keyboard.

#include <set>

#include "effect/ui/model/GraphAreas.h"
#include "effect/ui/model/KeyInput.h"
#include "effect/ui/model/PointerInput.h"
#include "tests/effect/ui/SceneFixture.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

class PageTest : public orvalo::testing::SceneFixture {
  protected:
    PageTest() : pointer(scene, editor), keys(scene, editor) { editor.setHasKeyboard(true); }

    void click(const Rect& area) {
        pointer.press({.x = area.centerX(), .y = area.centerY(), .time = time_});
        pointer.release();
        time_ += 1.0;
    }
    void clickTab(Page page) { click(scene.layout.tab.at(static_cast<std::size_t>(page))); }
    bool press(Key key) { return keys.press({.key = key}); }
    bool type(char32_t character) {
        return keys.press({.key = Key::character, .character = character});
    }

    PointerInput pointer;
    KeyInput keys;

  private:
    double time_ = 0.0;
};

TEST_F(PageTest, TabOpensItsPageAndClosesItAgain) {
    clickTab(Page::sideChain);
    EXPECT_EQ(scene.layout.page, Page::sideChain);
    clickTab(Page::beats);
    EXPECT_EQ(scene.layout.page, Page::beats);
    clickTab(Page::beats);
    EXPECT_EQ(scene.layout.page, Page::history);
    clickTab(Page::dynamics);
    clickTab(Page::history);
    EXPECT_EQ(scene.layout.page, Page::history);
    clickTab(Page::history);
    EXPECT_EQ(scene.layout.page, Page::history);
    EXPECT_EQ(host.calls, Calls{});
}

TEST_F(PageTest, EveryControlCanBeReachedByTheTabKey) {
    std::set<std::size_t> reached;
    for (std::size_t page = 0; page < pageCount; ++page) {
        keys.enter(false);
        reached.insert(scene.focus);
        while (press(Key::tab)) {
            reached.insert(scene.focus);
            if (const auto parameter = scene.focusedControl()) {
                EXPECT_EQ(pageOf(*parameter).value_or(scene.layout.page), scene.layout.page)
                    << range(*parameter).symbol;
            }
        }
        editor.focus(tabsFocus, true);
        EXPECT_TRUE(press(Key::right));
    }
    EXPECT_EQ(reached.size(), metersFocus + 1);
    EXPECT_EQ(scene.layout.page, Page::history);
}

TEST_F(PageTest, ControlsOfThePageFollowTheTabs) {
    editor.openPage(Page::beats);
    editor.focus(tabsFocus, true);
    for (const Parameter parameter : parametersOf(Page::beats)) {
        press(Key::tab);
        EXPECT_EQ(scene.focusedControl(), parameter);
    }
    press(Key::tab);
    EXPECT_EQ(scene.focus, padFocus);
    press(Key::tab);
    EXPECT_EQ(scene.focus, metersFocus);
}

TEST_F(PageTest, KeysOnTheTabsOpenTheirNeighbours) {
    editor.focus(tabsFocus, true);
    EXPECT_TRUE(type(' '));
    EXPECT_EQ(scene.layout.page, Page::sideChain);
    EXPECT_TRUE(press(Key::left));
    EXPECT_TRUE(press(Key::left));
    EXPECT_EQ(scene.layout.page, Page::beats);
    pointer.wheel({.x = scene.layout.tabs.x + 4.0, .y = scene.layout.tabs.centerY()}, -1);
    EXPECT_EQ(scene.layout.page, Page::history);
}

TEST_F(PageTest, FocusOfAClosedPageGoesToTheTabs) {
    editor.openPage(Page::output);
    editor.focus(focusOf(Parameter::link), true);
    editor.openPage(Page::dynamics);
    EXPECT_EQ(scene.focus, tabsFocus);
    editor.focus(focusOf(Parameter::ratio), true);
    editor.openPage(Page::history);
    EXPECT_EQ(scene.focusedControl(), Parameter::ratio);
}

TEST_F(PageTest, TypingEndsWhenThePageCloses) {
    editor.openPage(Page::beats);
    editor.beginEntry(Parameter::beatTempo);
    editor.openPage(Page::history);
    EXPECT_FALSE(scene.entry);
}

TEST_F(PageTest, ControlsOfAClosedPageTakeNoPress) {
    editor.openPage(Page::dynamics);
    const Rect dial = scene.layout.cell(Parameter::hold).dial;
    editor.openPage(Page::history);
    EXPECT_EQ(scene.targetAt(dial.centerX(), dial.centerY()).kind, Target::Kind::history);
}

TEST_F(PageTest, SwitchTogglesByPressAndKey) {
    editor.openPage(Page::sideChain);
    click(toggleArea(scene.layout, Parameter::sideChainListen));
    EXPECT_EQ(value(Parameter::sideChainListen), 1.0F);
    EXPECT_EQ(scene.focus, focusOf(Parameter::sideChainListen));
    pointer.wheel({.x = scene.layout.cell(Parameter::sideChainListen).area.centerX(),
                   .y = scene.layout.cell(Parameter::sideChainListen).area.centerY()},
                  1);
    EXPECT_EQ(value(Parameter::sideChainListen), 1.0F);
    editor.focus(scene.focus, true);
    EXPECT_TRUE(type(' '));
    EXPECT_EQ(value(Parameter::sideChainListen), 0.0F);
    EXPECT_TRUE(press(Key::up));
    EXPECT_TRUE(press(Key::up));
    EXPECT_EQ(value(Parameter::sideChainListen), 1.0F);
    EXPECT_TRUE(press(Key::erase));
    EXPECT_EQ(value(Parameter::sideChainListen), 0.0F);
    EXPECT_FALSE(type('1'));
    EXPECT_EQ(host.calls.front(), "grab sc_listen");
    EXPECT_EQ(host.calls.back(), "let sc_listen");
}

TEST_F(PageTest, ChoiceTakesThePressedValue) {
    editor.openPage(Page::dynamics);
    for (const std::size_t wanted : {2U, 0U, 1U}) {
        click(segmentAreas(scene.layout, Parameter::oversampling).at(wanted));
        EXPECT_EQ(value(Parameter::oversampling), static_cast<float>(wanted));
    }
    click(segmentAreas(scene.layout, Parameter::oversampling).at(1));
    EXPECT_EQ(host.values, (std::vector<float>{2.0F, 0.0F, 1.0F}));
    editor.focus(scene.focus, true);
    EXPECT_TRUE(type(' '));
    EXPECT_EQ(value(Parameter::oversampling), 2.0F);
    EXPECT_TRUE(press(Key::enter));
    EXPECT_EQ(value(Parameter::oversampling), 0.0F);
    EXPECT_FALSE(scene.entry);
    EXPECT_TRUE(press(Key::end));
    EXPECT_TRUE(press(Key::down));
    EXPECT_EQ(value(Parameter::oversampling), 1.0F);
    const Rect& area = scene.layout.cell(Parameter::oversampling).area;
    pointer.wheel({.x = area.centerX(), .y = area.centerY()}, 1);
    EXPECT_EQ(value(Parameter::oversampling), 2.0F);
    EXPECT_TRUE(press(Key::erase));
    EXPECT_EQ(value(Parameter::oversampling), 0.0F);
}

TEST_F(PageTest, ChoiceThatShowsOneValueStepsThroughAll) {
    scene.layout = Layout::of(320.0, 150.0, 1.0, Page::dynamics);
    for (const float wanted : {1.0F, 2.0F, 0.0F}) {
        click(segmentAreas(scene.layout, Parameter::oversampling).front());
        EXPECT_EQ(value(Parameter::oversampling), wanted);
    }
}

TEST_F(PageTest, KnobsWorkAsElsewhere) {
    editor.openPage(Page::sideChain);
    const Cell& cell = scene.layout.cell(Parameter::sideChainHighPass);
    pointer.wheel({.x = cell.dial.centerX(), .y = cell.dial.centerY()}, 2);
    EXPECT_EQ(value(Parameter::sideChainHighPass), 30.0F);
    click(cell.value);
    ASSERT_TRUE(scene.entry);
    for (const char32_t c : U"1.5k") {
        if (c != 0) {
            type(c);
        }
    }
    press(Key::enter);
    EXPECT_EQ(value(Parameter::sideChainHighPass), 1500.0F);
    const Pointer twice{.x = cell.dial.centerX(), .y = cell.dial.centerY(), .time = 90.0};
    for (int i = 0; i < 2; ++i) {
        pointer.press(twice);
        pointer.release();
    }
    EXPECT_EQ(value(Parameter::sideChainHighPass), 20.0F);
}

TEST_F(PageTest, TabIsMarkedWhileAControlHasAnotherValueThanItsDefault) {
    EXPECT_FALSE(isPageInUse(Page::dynamics, scene.values));
    editor.set(Parameter::range, 12.0F);
    EXPECT_TRUE(isPageInUse(Page::dynamics, scene.values));
    EXPECT_FALSE(isPageInUse(Page::sideChain, scene.values));
    EXPECT_TRUE(isTouched(Part::tabs));
}

TEST_F(PageTest, ControlsWithoutEffectAreDimmed) {
    editor.openPage(Page::output);
    scene.markDrawn();
    EXPECT_FALSE(isInForce(scene.values, Parameter::ceiling));
    editor.set(Parameter::ceilingOn, 1.0F);
    EXPECT_TRUE(isInForce(scene.values, Parameter::ceiling));
    EXPECT_TRUE(isTouched(Parameter::ceiling));
    EXPECT_FALSE(isTouched(Parameter::midAmount));
    EXPECT_TRUE(isInForce(scene.values, Parameter::makeup));
    editor.set(Parameter::autoMakeup, 1.0F);
    EXPECT_FALSE(isInForce(scene.values, Parameter::makeup));
}

TEST_F(PageTest, UndoAndTheComparisonCoverEveryControl) {
    const ParameterValues before = scene.values;
    ParameterValues after = before;
    for (std::size_t i = 1; i < parameterCount; ++i) {
        const auto parameter = static_cast<Parameter>(i);
        const auto& ends = range(parameter);
        after.set(parameter, ends.standard == ends.maximum ? ends.minimum : ends.maximum);
    }
    editor.copySound();
    for (std::size_t i = 1; i < parameterCount; ++i) {
        const auto parameter = static_cast<Parameter>(i);
        editor.setOnce(parameter, after[parameter]);
    }
    EXPECT_EQ(scene.values, after);
    editor.switchSound();
    EXPECT_EQ(scene.values, before);
    editor.switchSound();
    EXPECT_EQ(scene.values, after);
    for (std::size_t i = 1; i < parameterCount + 2; ++i) {
        press(Key::undo);
    }
    EXPECT_EQ(scene.values, before);
    for (std::size_t i = 1; i < parameterCount + 2; ++i) {
        press(Key::redo);
    }
    EXPECT_EQ(scene.values, after);
}

}  // namespace
