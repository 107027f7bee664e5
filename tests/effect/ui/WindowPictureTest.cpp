#include <limits>

#include "tests/effect/ui/WindowFixture.h"

namespace {

using namespace orvalo::testing;
using orvalo::effect::ui::Layout;
using orvalo::effect::ui::Meter;
using orvalo::effect::ui::Rect;
using orvalo::effect::ui::Section;

constexpr std::uint32_t accent = 0x5FC9B8;

class WindowPictureTest : public PluginUIFixture {
  protected:
    XWindowAttributes attributes() const {
        XWindowAttributes result{};
        XGetWindowAttributes(host.display(), interface.window(), &result);
        return result;
    }
    bool untilSize(int width, int height) {
        return interface.idleUntil(
            [&] { return attributes().width == width && attributes().height == height; });
    }
};

TEST_F(WindowPictureTest, AControlsValueIsShownInItsPlaceAndInTheCurve) {
    const Pixels before = interface.pixels();
    interface.send("threshold", -40.0F);
    interface.settle();
    const Pixels after = interface.pixels();
    EXPECT_NE(after.part(dial(Parameter::threshold)), before.part(dial(Parameter::threshold)));
    EXPECT_NE(after.part(valueText(Parameter::threshold)),
              before.part(valueText(Parameter::threshold)));
    EXPECT_NE(after.part(layout.curve), before.part(layout.curve));
    EXPECT_EQ(after.part(dial(Parameter::ratio)), before.part(dial(Parameter::ratio)));
    EXPECT_EQ(after.part(layout.history), before.part(layout.history));
    interface.send("threshold", -18.0F);
    interface.settle();
    EXPECT_EQ(interface.pixels(), before);
    EXPECT_EQ(interface.writes, Writes{});
}

TEST_F(WindowPictureTest, MetersMoveAndTheHistoryKeepsThem) {
    const Pixels before = interface.pixels();
    interface.send("gain_reduction", 15.0F);
    interface.send("input_level", -6.0F);
    ASSERT_TRUE(interface.idleUntil([&] {
        const Pixels now = interface.pixels();
        return now.part(layout.meter(Meter::reduction)) !=
                   before.part(layout.meter(Meter::reduction)) &&
               now.part(layout.meter(Meter::input)) != before.part(layout.meter(Meter::input)) &&
               now.part(layout.curve) != before.part(layout.curve) &&
               now.part(layout.history) != before.part(layout.history);
    }));
    EXPECT_EQ(interface.pixels().part(layout.meter(Meter::output)),
              before.part(layout.meter(Meter::output)));
}

TEST_F(WindowPictureTest, TheHistoryMovesOnWhileEveryTurnBringsLevels) {
    float level = -6.0F;
    Pixels before = interface.pixels();
    for (int i = 0; i < 10; ++i) {
        ASSERT_TRUE(interface.idleUntil([&] {
            const Pixels now = interface.pixels();
            const bool isNew = now.part(layout.history) != before.part(layout.history);
            if (isNew) {
                before = now;
            }
            level = level < -9.0F ? -6.0F : level - 0.5F;
            interface.send("output_level", level);
            return isNew;
        })) << i;
    }
}

TEST_F(WindowPictureTest, MidiLightsFlashAndGoOutAgain) {
    const Rect& title = layout.panel(Section::ducking).title;
    const Pixels dark = interface.pixels();
    interface.send("midi_in_count", 41.0F);
    interface.settle();
    EXPECT_EQ(interface.pixels(), dark);
    interface.send("midi_in_count", 42.0F);
    ASSERT_TRUE(
        interface.idleUntil([&] { return interface.pixels().part(title).count(accent) > 9; }));
    ASSERT_TRUE(interface.idleUntil([&] { return interface.pixels() == dark; }));
}

TEST_F(WindowPictureTest, OddPortEventsChangeNothing) {
    const Pixels before = interface.pixels();
    const double wide = -40.0;
    const float value = -40.0F;
    const float odd = std::numeric_limits<float>::quiet_NaN();
    interface.sendRaw(7, sizeof wide, 0, &wide);
    interface.sendRaw(7, 2, 0, &value);
    interface.sendRaw(7, sizeof value, 17, &value);
    interface.sendRaw(7, sizeof value, 0, nullptr);
    interface.sendRaw(7, sizeof odd, 0, &odd);
    interface.sendRaw(0, sizeof value, 0, &value);
    interface.sendRaw(99, sizeof value, 0, &value);
    interface.sendRaw(LV2UI_INVALID_PORT_INDEX, sizeof value, 0, &value);
    interface.settle();
    EXPECT_EQ(interface.pixels(), before);
}

TEST_F(WindowPictureTest, TheHostResizesIt) {
    EXPECT_EQ(interface.sizes, (std::vector<std::pair<int, int>>{{640, 480}}));
    EXPECT_EQ(interface.resize(400, 300), 0);
    ASSERT_TRUE(untilSize(400, 300));
    interface.settle();
    const auto small = interface.layout();
    EXPECT_GT(interface.pixels().part(small.cell(Parameter::mix).dial).count(accent), 5U);
    // Nobody was asked for a size again.
    EXPECT_EQ(interface.sizes.size(), 1U);
    host.click(small.nextPreset.centerX(), small.nextPreset.centerY());
    EXPECT_TRUE(untilWritten(13));
}

TEST_F(WindowPictureTest, AnySizeThatTheServerGivesIsDrawn) {
    for (const auto& [width, height] : {std::pair(1, 1), {37, 900}, {1300, 40}, {640, 480}}) {
        XResizeWindow(host.display(), interface.window(), static_cast<unsigned>(width),
                      static_cast<unsigned>(height));
        ASSERT_TRUE(untilSize(width, height));
        for (int i = 0; i < 5; ++i) {
            EXPECT_EQ(interface.idle(), 0);
        }
    }
    interface.settle();
}

TEST_F(WindowPictureTest, ItNamesItsLeastSize) {
    XSizeHints hints{};
    long supplied = 0;
    ASSERT_NE(XGetWMNormalHints(host.display(), interface.window(), &hints, &supplied), 0);
    EXPECT_NE(hints.flags & PMinSize, 0);
    EXPECT_EQ(hints.min_width, Layout::leastWidth);
    EXPECT_EQ(hints.min_height, Layout::leastHeight);
}

TEST_F(WindowPictureTest, WhatWasHiddenIsThereOnceItIsShown) {
    const Pixels before = interface.pixels();
    host.hide();
    interface.send("threshold", -50.0F);
    interface.send("input_level", -3.0F);
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(interface.idle(), 0);
    }
    host.show();
    ASSERT_TRUE(interface.idleUntil([&] {
        const Pixels now = interface.pixels();
        return now.part(dial(Parameter::threshold)).count(accent) > 0 &&
               now.part(dial(Parameter::threshold)) != before.part(dial(Parameter::threshold)) &&
               now.part(layout.history) != before.part(layout.history);
    }));
}

using WindowScaleTest = WindowFixture;

TEST_F(WindowScaleTest, TheScaleFactorEnlargesIt) {
    EmbeddedPluginUI interface(host, {.scale = 2.0F, .parent = host.id()});
    ASSERT_TRUE(interface.isOpen());
    EXPECT_EQ(interface.sizes, (std::vector<std::pair<int, int>>{{1280, 960}}));
    interface.resize(800, 600);
    ASSERT_TRUE(interface.idleUntil([&] { return interface.pixels().width == 800; }));
    interface.settle();
    const auto layout = interface.layout(2.0F);
    host.click(layout.nextPreset.centerX(), layout.nextPreset.centerY());
    EXPECT_TRUE(interface.idleUntil([&] { return interface.writes.size() == 13; }));
}

}  // namespace
