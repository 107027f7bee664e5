#include <limits>

#include "effect/ui/model/GraphAreas.h"
#include "tests/effect/ui/WindowFixture.h"

namespace {

using namespace orvalo::testing;
using orvalo::effect::ui::Layout;
using orvalo::effect::ui::Meter;
using orvalo::effect::ui::Rect;
using orvalo::effect::ui::Section;

constexpr std::uint32_t accent = 0x5FC9B8;

class WindowPictureTest : public EmbeddedUIFixture {
  protected:
    XWindowAttributes attributes() const {
        XWindowAttributes result{};
        XGetWindowAttributes(host.display(), pluginUI.window(), &result);
        return result;
    }
    bool untilSize(int width, int height) {
        return pluginUI.idleUntil(
            [&] { return attributes().width == width && attributes().height == height; });
    }
};

TEST_F(WindowPictureTest, ShowsAControlsValueInItsCellAndInTheCurve) {
    const Pixels before = pluginUI.pixels();
    pluginUI.send("threshold", -40.0F);
    pluginUI.settle();
    const Pixels after = pluginUI.pixels();
    EXPECT_NE(after.part(dial(Parameter::threshold)), before.part(dial(Parameter::threshold)));
    EXPECT_NE(after.part(valueText(Parameter::threshold)),
              before.part(valueText(Parameter::threshold)));
    EXPECT_NE(after.part(layout.curve), before.part(layout.curve));
    EXPECT_EQ(after.part(dial(Parameter::ratio)), before.part(dial(Parameter::ratio)));
    EXPECT_EQ(after.part(layout.history), before.part(layout.history));
    pluginUI.send("threshold", -18.0F);
    pluginUI.settle();
    EXPECT_EQ(pluginUI.pixels(), before);
    EXPECT_EQ(pluginUI.writes, Writes{});
}

TEST_F(WindowPictureTest, MetersMoveAndTheHistoryRecordsThem) {
    const Pixels before = pluginUI.pixels();
    pluginUI.send("gain_reduction", 15.0F);
    pluginUI.send("input_level", -6.0F);
    ASSERT_TRUE(pluginUI.idleUntil([&] {
        pluginUI.run();
        const Pixels now = pluginUI.pixels();
        return now.part(layout.meter(Meter::reduction)) !=
                   before.part(layout.meter(Meter::reduction)) &&
               now.part(layout.meter(Meter::input)) != before.part(layout.meter(Meter::input)) &&
               now.part(layout.curve) != before.part(layout.curve) &&
               now.part(layout.history) != before.part(layout.history);
    }));
    EXPECT_EQ(pluginUI.pixels().part(layout.meter(Meter::output)),
              before.part(layout.meter(Meter::output)));
}

TEST_F(WindowPictureTest, HistoryMovesOnWhileLevelsArriveConstantly) {
    float level = -6.0F;
    Pixels before = pluginUI.pixels();
    for (int i = 0; i < 10; ++i) {
        ASSERT_TRUE(pluginUI.idleUntil([&] {
            const Pixels now = pluginUI.pixels();
            const bool isNew = now.part(layout.history) != before.part(layout.history);
            if (isNew) {
                before = now;
            }
            level = level < -9.0F ? -6.0F : level - 0.5F;
            pluginUI.send("output_level", level);
            pluginUI.run();
            return isNew;
        })) << i;
    }
}

// A host sends no values when it stops.
TEST_F(WindowPictureTest, MetersFallAndTheHistoryStopsWhenTheEffectStops) {
    const Rect& meter = layout.meter(Meter::output);
    const Rect& reduction = layout.meter(Meter::reduction);
    const Pixels silent = pluginUI.pixels();
    pluginUI.send("output_level", -6.0F);
    pluginUI.send("gain_reduction", 12.0F);
    const Rect strip = orvalo::effect::ui::historyAreas(layout).strip;
    ASSERT_TRUE(pluginUI.idleUntil([&] {
        pluginUI.run();
        return pluginUI.pixels().part(strip) != silent.part(strip);
    }));
    ASSERT_TRUE(pluginUI.idleUntil([&] {
        const Pixels now = pluginUI.pixels();
        return now.part(meter) == silent.part(meter) &&
               now.part(reduction) == silent.part(reduction);
    }));
    pluginUI.settle();
    const Pixels stopped = pluginUI.pixels();
    EXPECT_NE(stopped.part(layout.history), silent.part(layout.history));
    pluginUI.settle();
    EXPECT_EQ(pluginUI.pixels(), stopped);
    // The levels that the host sent last are shown again while the effect runs.
    ASSERT_TRUE(pluginUI.idleUntil([&] {
        pluginUI.run();
        const Pixels now = pluginUI.pixels();
        return now.part(meter) != silent.part(meter) &&
               now.part(layout.history) != stopped.part(layout.history);
    }));
}

TEST_F(WindowPictureTest, HistoryChoosesItsSpanAndPauses) {
    const auto areas = orvalo::effect::ui::historyAreas(layout);
    float level = -6.0F;
    const auto play = [&] {
        level = level < -9.0F ? -6.0F : level - 0.5F;
        pluginUI.send("output_level", level);
        pluginUI.run();
    };
    const Pixels sixSeconds = pluginUI.pixels();
    host.click(areas.span.centerX(), areas.span.centerY());
    ASSERT_TRUE(pluginUI.idleUntil(
        [&] { return pluginUI.pixels().part(areas.span) != sixSeconds.part(areas.span); }));
    host.click(areas.levels.centerX(), areas.levels.centerY());
    host.movePointer(1.0, 1.0);
    pluginUI.settle();
    const Pixels paused = pluginUI.pixels();
    EXPECT_NE(paused.part(areas.levels), sixSeconds.part(areas.levels));
    for (int i = 0; i < 40; ++i) {
        ASSERT_TRUE(pluginUI.idleUntil([&] {
            play();
            return pluginUI.pixels().part(layout.meter(Meter::output)) !=
                   paused.part(layout.meter(Meter::output));
        }));
        pluginUI.idle();
    }
    EXPECT_EQ(pluginUI.pixels().part(areas.levels), paused.part(areas.levels));
    host.click(areas.levels.centerX(), areas.levels.centerY());
    ASSERT_TRUE(pluginUI.idleUntil([&] {
        play();
        return pluginUI.pixels().part(areas.levels).count(0xE2E8ED) > 10;
    }));
}

TEST_F(WindowPictureTest, ClipLightStaysUntilItIsClicked) {
    constexpr std::uint32_t red = 0xEF705F;
    const Rect& panel = layout.panel(Section::meters).area;
    pluginUI.send("output_level", -1.0F);
    pluginUI.send("true_peak", 0.3F);
    ASSERT_TRUE(pluginUI.idleUntil([&] {
        pluginUI.run();
        return pluginUI.pixels().part(panel).count(red) > 20;
    }));
    pluginUI.send("true_peak", -90.0F);
    pluginUI.send("output_level", -90.0F);
    pluginUI.run();
    pluginUI.settle();
    EXPECT_GT(pluginUI.pixels().part(panel).count(red), 20U);
    host.click(panel.centerX(), panel.centerY());
    EXPECT_TRUE(pluginUI.idleUntil([&] { return pluginUI.pixels().part(panel).count(red) == 0; }));
}

TEST_F(WindowPictureTest, TextAppearsWhereThePointerRests) {
    const Pixels before = pluginUI.pixels();
    const Rect& cell = layout.cell(Parameter::threshold).area;
    host.movePointer(cell.centerX(), cell.centerY());
    const Rect below{cell.x, cell.bottom() + 9.0, 200.0, 20.0};
    ASSERT_TRUE(
        pluginUI.idleUntil([&] { return pluginUI.pixels().part(below) != before.part(below); }));
    host.movePointer(1.0, 1.0);
    EXPECT_TRUE(pluginUI.idleUntil([&] { return pluginUI.pixels() == before; }));
}

TEST_F(WindowPictureTest, MidiLightsFlashAndFade) {
    const Rect& title = layout.panel(Section::ducking).title;
    const Pixels dark = pluginUI.pixels();
    pluginUI.send("midi_in_count", 41.0F);
    pluginUI.settle();
    EXPECT_EQ(pluginUI.pixels(), dark);
    pluginUI.send("midi_in_count", 42.0F);
    ASSERT_TRUE(
        pluginUI.idleUntil([&] { return pluginUI.pixels().part(title).count(accent) > 9; }));
    ASSERT_TRUE(pluginUI.idleUntil([&] { return pluginUI.pixels() == dark; }));
}

TEST_F(WindowPictureTest, IgnoresInvalidPortEvents) {
    const Pixels before = pluginUI.pixels();
    const double wide = -40.0;
    const float value = -40.0F;
    const float odd = std::numeric_limits<float>::quiet_NaN();
    pluginUI.sendRaw(7, sizeof wide, 0, &wide);
    pluginUI.sendRaw(7, 2, 0, &value);
    pluginUI.sendRaw(7, sizeof value, 17, &value);
    pluginUI.sendRaw(7, sizeof value, 0, nullptr);
    pluginUI.sendRaw(7, sizeof odd, 0, &odd);
    pluginUI.sendRaw(0, sizeof value, 0, &value);
    pluginUI.sendRaw(99, sizeof value, 0, &value);
    pluginUI.sendRaw(LV2UI_INVALID_PORT_INDEX, sizeof value, 0, &value);
    pluginUI.settle();
    EXPECT_EQ(pluginUI.pixels(), before);
}

TEST_F(WindowPictureTest, FollowsAResizeByTheHost) {
    EXPECT_EQ(pluginUI.sizes, (std::vector<std::pair<int, int>>{{640, 480}}));
    EXPECT_EQ(pluginUI.resize(400, 300), 0);
    ASSERT_TRUE(untilSize(400, 300));
    pluginUI.settle();
    const auto small = pluginUI.layout();
    EXPECT_GT(pluginUI.pixels().part(small.cell(Parameter::mix).dial).count(accent), 5U);
    // The host was not asked for a size again.
    EXPECT_EQ(pluginUI.sizes.size(), 1U);
    host.click(small.nextPreset.centerX(), small.nextPreset.centerY());
    EXPECT_TRUE(untilWritten(13));
}

TEST_F(WindowPictureTest, DrawsEverySizeThatTheServerSets) {
    for (const auto& [width, height] : {std::pair(1, 1), {37, 900}, {1300, 40}, {640, 480}}) {
        XResizeWindow(host.display(), pluginUI.window(), static_cast<unsigned>(width),
                      static_cast<unsigned>(height));
        ASSERT_TRUE(untilSize(width, height));
        for (int i = 0; i < 5; ++i) {
            EXPECT_EQ(pluginUI.idle(), 0);
        }
    }
    pluginUI.settle();
}

TEST_F(WindowPictureTest, StatesItsMinimumSize) {
    XSizeHints hints{};
    long supplied = 0;
    ASSERT_NE(XGetWMNormalHints(host.display(), pluginUI.window(), &hints, &supplied), 0);
    EXPECT_NE(hints.flags & PMinSize, 0);
    EXPECT_EQ(hints.min_width, Layout::leastWidth);
    EXPECT_EQ(hints.min_height, Layout::leastHeight);
}

TEST_F(WindowPictureTest, RedrawsWhenItBecomesVisible) {
    const Pixels before = pluginUI.pixels();
    host.hide();
    pluginUI.send("threshold", -50.0F);
    pluginUI.send("input_level", -3.0F);
    for (int i = 0; i < 20; ++i) {
        pluginUI.run();
        EXPECT_EQ(pluginUI.idle(), 0);
    }
    host.show();
    ASSERT_TRUE(pluginUI.idleUntil([&] {
        pluginUI.run();
        const Pixels now = pluginUI.pixels();
        return now.part(dial(Parameter::threshold)).count(accent) > 0 &&
               now.part(dial(Parameter::threshold)) != before.part(dial(Parameter::threshold)) &&
               now.part(layout.history) != before.part(layout.history);
    }));
}

using WindowScaleTest = WindowFixture;

TEST_F(WindowScaleTest, ScaleFactorEnlargesIt) {
    EmbeddedPluginUI pluginUI(host, {.scale = 2.0F, .parent = host.id()});
    ASSERT_TRUE(pluginUI.isOpen());
    EXPECT_EQ(pluginUI.sizes, (std::vector<std::pair<int, int>>{{1280, 960}}));
    pluginUI.resize(800, 600);
    ASSERT_TRUE(pluginUI.idleUntil([&] { return pluginUI.pixels().width == 800; }));
    pluginUI.settle();
    const auto layout = pluginUI.layout(2.0F);
    host.click(layout.nextPreset.centerX(), layout.nextPreset.centerY());
    EXPECT_TRUE(pluginUI.idleUntil(
        [&] { return pluginUI.writes.size() == orvalo::effect::parameterCount - 1; }));
}

}  // namespace
