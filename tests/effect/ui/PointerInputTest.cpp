#include "effect/ui/model/PointerInput.h"

#include "effect/ui/model/GraphAreas.h"
#include "effect/ui/model/TransferCurve.h"

#include "tests/effect/ui/SceneFixture.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

class PointerInputTest : public orvalo::testing::SceneFixture {
  protected:
    PointerInputTest() : input(scene, editor) {}

    static Pointer at(const Rect& area, double up = 0.0, bool fine = false) {
        return {.x = area.centerX(), .y = area.centerY() - up, .time = 0.0, .fine = fine};
    }
    Pointer knob(Parameter parameter, double up = 0.0, bool fine = false) const {
        return at(scene.layout.cell(parameter).dial, up, fine);
    }

    void click(Pointer pointer, double time = 0.0) {
        pointer.time = time;
        input.press(pointer);
        input.release();
    }

    PointerInput input;
};

TEST_F(PointerInputTest, DraggingUpTurnsByTheShareOfTheTravel) {
    input.press(knob(Parameter::threshold));
    EXPECT_EQ(host.calls, Calls{"grab threshold"});
    // 20 of 200 pixels of 60 dB.
    input.move(knob(Parameter::threshold, 20.0));
    input.move(knob(Parameter::threshold, 10.0));
    input.release();
    EXPECT_EQ(host.values, (std::vector<float>{-12.0F, -15.0F}));
    EXPECT_EQ(host.calls,
              (Calls{"grab threshold", "write threshold", "write threshold", "let threshold"}));
}

TEST_F(PointerInputTest, DraggingToTheRightTurnsUp) {
    Pointer pointer = knob(Parameter::threshold);
    input.press(pointer);
    pointer.x += 20.0;
    input.move(pointer);
    EXPECT_EQ(value(Parameter::threshold), -12.0F);
}

TEST_F(PointerInputTest, FineControlIsTenTimesSlowerAndCanChangeDuringADrag) {
    input.press(knob(Parameter::threshold));
    input.move(knob(Parameter::threshold, 20.0, true));
    EXPECT_EQ(value(Parameter::threshold), -17.4F);
    input.move(knob(Parameter::threshold, 40.0, false));
    EXPECT_EQ(value(Parameter::threshold), -11.4F);
}

TEST_F(PointerInputTest, DraggingBeyondTheEndStopsThereAndReturnsAtOnce) {
    input.press(knob(Parameter::threshold));
    input.move(knob(Parameter::threshold, 500.0));
    EXPECT_EQ(value(Parameter::threshold), 0.0F);
    input.move(knob(Parameter::threshold, 480.0));
    EXPECT_EQ(value(Parameter::threshold), -6.0F);
}

TEST_F(PointerInputTest, DoubleClickResets) {
    editor.receive(Parameter::threshold, -40.0F);
    click(knob(Parameter::threshold), 1.0);
    click(knob(Parameter::threshold), 1.3);
    EXPECT_EQ(host.values, std::vector<float>{-18.0F});
    EXPECT_EQ(host.calls, (Calls{"grab threshold", "let threshold", "grab threshold",
                                 "write threshold", "let threshold"}));
}

TEST_F(PointerInputTest, SlowOrDistantPressesAreNotADoubleClick) {
    editor.receive(Parameter::threshold, -40.0F);
    click(knob(Parameter::threshold), 1.0);
    click(knob(Parameter::threshold), 1.5);
    click(knob(Parameter::ratio), 1.6);
    click(knob(Parameter::threshold), 1.7);
    EXPECT_EQ(host.values, std::vector<float>{});
}

TEST_F(PointerInputTest, WheelTurnsBySteps) {
    input.wheel(knob(Parameter::threshold), 1);
    input.wheel(knob(Parameter::threshold), -1);
    input.wheel(knob(Parameter::threshold, 0.0, true), -1);
    EXPECT_EQ(host.values, (std::vector<float>{-17.0F, -18.0F, -18.1F}));
    host.calls.clear();
    input.wheel(at(scene.layout.cell(Parameter::enabled).area), -1);
    input.wheel(at(scene.layout.wordmark), -1);
    EXPECT_EQ(host.calls, Calls{});
}

TEST_F(PointerInputTest, KnobStaysHoveredWhileItIsDragged) {
    const Target knobTarget{.kind = Target::Kind::control, .parameter = Parameter::threshold};
    input.move(knob(Parameter::threshold));
    input.press(knob(Parameter::threshold));
    input.move(knob(Parameter::threshold, -400.0));
    input.leave();
    EXPECT_EQ(scene.hovered, knobTarget);
    input.release();
    EXPECT_NE(scene.hovered, knobTarget);
}

TEST_F(PointerInputTest, ThresholdPointFollowsThePointer) {
    const CurvePlot plot(scene.layout);
    const CurvePoint start = thresholdPoint(scene);
    const Pointer from{.x = start.x, .y = start.y};
    input.move(from);
    EXPECT_EQ(scene.hovered.kind, Target::Kind::thresholdPoint);
    input.press(from);
    input.move({.x = plot.x(-30.0F), .y = start.y});
    EXPECT_EQ(value(Parameter::threshold), -30.0F);
    // Beyond the plot's edge and back.
    input.move({.x = plot.x(-100.0F), .y = start.y});
    EXPECT_EQ(value(Parameter::threshold), -60.0F);
    input.release();
    EXPECT_EQ(host.calls,
              (Calls{"grab threshold", "write threshold", "write threshold", "let threshold"}));
}

TEST_F(PointerInputTest, RatioPointFollowsThePointer) {
    const CurvePlot plot(scene.layout);
    editor.receive(Parameter::mix, 70.0F);
    const CurvePoint start = ratioPoint(scene);
    input.press({.x = start.x, .y = start.y});
    ParameterValues wanted = scene.values;
    wanted.set(Parameter::ratio, 2.0F);
    const double y = plot.y(steadyOutput(wanted, ratioPointLevel));
    input.move({.x = start.x, .y = y});
    EXPECT_NEAR(value(Parameter::ratio), 2.0F, 0.01F);
    EXPECT_NEAR(ratioPoint(scene).y, y, 0.2);
    input.move({.x = start.x, .y = -1000.0});
    EXPECT_EQ(value(Parameter::ratio), 1.0F);
    input.move({.x = start.x, .y = 1000.0});
    EXPECT_EQ(value(Parameter::ratio), 20.0F);
    input.release();
    EXPECT_EQ(host.calls.back(), "let ratio");
}

TEST_F(PointerInputTest, DoubleClickOnAPointResetsIt) {
    editor.receive(Parameter::threshold, -40.0F);
    const CurvePoint point = thresholdPoint(scene);
    click({.x = point.x, .y = point.y}, 1.0);
    click({.x = point.x, .y = point.y}, 1.2);
    EXPECT_EQ(value(Parameter::threshold), -18.0F);
}

TEST_F(PointerInputTest, WheelOnTheCurveTurnsTheKnee) {
    input.wheel(at(scene.layout.curve), 1);
    const CurvePoint point = thresholdPoint(scene);
    input.wheel({.x = point.x, .y = point.y}, 1);
    EXPECT_EQ(value(Parameter::knee), 7.0F);
    EXPECT_EQ(host.values, (std::vector<float>{6.5F, 7.0F}));
}

TEST_F(PointerInputTest, BypassedCurveHasNoPoints) {
    editor.receive(Parameter::enabled, 0.0F);
    const CurvePoint point = thresholdPoint(scene);
    EXPECT_EQ(scene.targetAt(point.x, point.y).kind, Target::Kind::curve);
}

TEST_F(PointerInputTest, HistoryPausesAndChangesItsSpan) {
    const auto areas = historyAreas(scene.layout);
    scene.history.advance(0.0);
    click(at(areas.levels));
    ASSERT_TRUE(scene.pausedHistory);
    scene.history.record({.input = -3.0F}, 0.1);
    scene.history.advance(1.0);
    EXPECT_EQ(scene.visibleHistory().point(239), Levels());
    input.wheel(at(areas.strip), -1);
    EXPECT_EQ(scene.visibleHistory().span(), 2U);
    click(at(areas.levels), 1.0);
    EXPECT_EQ(scene.visibleHistory().point(239).input, -3.0F);
    EXPECT_EQ(scene.history.span(), 2U);
    click(at(areas.span), 2.0);
    click(at(areas.span), 3.0);
    EXPECT_EQ(scene.history.span(), 0U);
}

TEST_F(PointerInputTest, SwitchTogglesOnPress) {
    click(at(scene.layout.cell(Parameter::enabled).area));
    click(at(scene.layout.cell(Parameter::enabled).area), 0.1);
    EXPECT_EQ(host.values, (std::vector<float>{0.0F, 1.0F}));
}

TEST_F(PointerInputTest, PressOnAValueStartsTypingIt) {
    click(at(scene.layout.cell(Parameter::attack).value));
    ASSERT_TRUE(scene.entry);
    EXPECT_EQ(scene.entry->parameter, Parameter::attack);
    // The second click goes to the text field.
    click(at(scene.layout.cell(Parameter::attack).value), 0.1);
    ASSERT_TRUE(scene.entry);
    EXPECT_FALSE(scene.entry->entry.isAllSelected());
}

TEST_F(PointerInputTest, PressElsewhereCommitsValidTextAndDiscardsInvalidText) {
    click(at(scene.layout.cell(Parameter::attack).value));
    scene.entry->entry = TextEntry("25");
    click(at(scene.layout.curve), 1.0);
    EXPECT_FALSE(scene.entry);
    EXPECT_EQ(value(Parameter::attack), 25.0F);
    click(at(scene.layout.cell(Parameter::attack).value), 2.0);
    scene.entry->entry = TextEntry("x");
    click(at(scene.layout.curve), 3.0);
    EXPECT_FALSE(scene.entry);
    EXPECT_EQ(value(Parameter::attack), 25.0F);
}

TEST_F(PointerInputTest, ArrowsStepThroughThePresets) {
    click(at(scene.layout.nextPreset), 1.0);
    EXPECT_EQ(scene.presets.label(), "First");
    click(at(scene.layout.nextPreset), 1.1);
    EXPECT_EQ(scene.presets.label(), "Second");
    click(at(scene.layout.previousPreset), 1.2);
    EXPECT_EQ(scene.presets.label(), "First");
    input.wheel(at(scene.layout.presetName), -1);
    EXPECT_EQ(scene.presets.label(), "Second");
}

TEST_F(PointerInputTest, ListOffersThePresets) {
    click(at(scene.layout.presetName));
    ASSERT_EQ(scene.list, 0U);
    input.move(at(scene.layout.presetEntry(2, 3)));
    EXPECT_EQ(scene.list, 2U);
    click(at(scene.layout.presetEntry(2, 3)), 1.0);
    EXPECT_FALSE(scene.list);
    EXPECT_EQ(scene.presets.label(), "Second");
}

TEST_F(PointerInputTest, LongListScrollsByWheelAndButtons) {
    for (int i = 0; i < 97; ++i) {
        store.factory.push_back({"P" + std::to_string(i), {{Parameter::mix, 1.0F}}});
    }
    click(at(scene.layout.presetName));
    constexpr std::size_t count = 100;
    const Rect first = scene.layout.presetEntry(0, count);
    EXPECT_TRUE(scene.layout.presetEntry(count - 1, count).isEmpty());
    scene.markDrawn();
    input.wheel(at(first), -1);
    EXPECT_TRUE(scene.layout.presetEntry(0, count).isEmpty());
    EXPECT_TRUE(isTouched(Part::header));
    // The entry that came below the pointer is marked.
    EXPECT_EQ(scene.targetAt(first.centerX(), first.centerY()).entry, *scene.list);
    EXPECT_GT(*scene.list, 0U);
    for (int i = 0; i < 9; ++i) {
        input.wheel(at(first), -1);
    }
    EXPECT_FALSE(scene.layout.presetEntry(count - 1, count).isEmpty());
    while (!scene.layout.presetScroll(-1, count).isEmpty()) {
        click(at(scene.layout.presetScroll(-1, count)));
        ASSERT_TRUE(scene.list);
    }
    EXPECT_FALSE(scene.layout.presetEntry(0, count).isEmpty());
    click(at(scene.layout.presetScroll(1, count)));
    EXPECT_TRUE(scene.layout.presetEntry(0, count).isEmpty());
    EXPECT_EQ(host.calls, Calls{});
}

TEST_F(PointerInputTest, PressBesideTheListOnlyClosesIt) {
    click(at(scene.layout.presetName));
    click(at(scene.layout.cell(Parameter::enabled).area), 1.0);
    EXPECT_FALSE(scene.list);
    EXPECT_EQ(host.calls, Calls{});
}

TEST_F(PointerInputTest, HoveringRedrawsOnlyTheTargets) {
    input.move(knob(Parameter::knee));
    EXPECT_TRUE(isTouched(Parameter::knee));
    EXPECT_FALSE(isTouched(Parameter::ratio));
    scene.markDrawn();
    input.move(knob(Parameter::knee, 1.0));
    EXPECT_FALSE(scene.isChanged());
    input.leave();
    EXPECT_TRUE(isTouched(Parameter::knee));
}

}  // namespace
