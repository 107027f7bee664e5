#include <X11/keysym.h>

#include <array>
#include <limits>

#include "effect/ui/model/GraphAreas.h"
#include "tests/effect/ui/WindowFixture.h"

namespace {

using namespace orvalo::testing;
using namespace orvalo::effect::ui;

constexpr std::uint32_t accent = 0x5FC9B8;
constexpr std::uint32_t amber = 0xE3A84B;

class WindowPageTest : public EmbeddedUIFixture {
  protected:
    void clickIn(const Rect& area) { host.click(area.centerX(), area.centerY()); }
    const Rect& tab(Page page) const { return layout.tab.at(static_cast<std::size_t>(page)); }

    void open(Page page) {
        clickIn(tab(page));
        host.movePointer(1.0, 1.0);
        layout = layout.with(page == layout.page ? Page::history : page);
        pluginUI.settle();
    }
};

TEST_F(WindowPageTest, EveryControlOfThePagesWritesItsPort) {
    for (const Page page : {Page::sideChain, Page::dynamics, Page::output, Page::beats}) {
        open(page);
        for (const Parameter parameter : parametersOf(page)) {
            pluginUI.writes.clear();
            switch (lookOf(parameter)) {
                case Look::knob:
                    host.movePointer(dial(parameter).centerX(), dial(parameter).centerY());
                    host.button(
                        range(parameter).standard == range(parameter).maximum ? Button5 : Button4,
                        true);
                    host.button(
                        range(parameter).standard == range(parameter).maximum ? Button5 : Button4,
                        false);
                    break;
                case Look::toggle:
                    clickIn(toggleArea(layout, parameter));
                    break;
                case Look::segments:
                    clickIn(segmentAreas(layout, parameter).back());
                    break;
            }
            ASSERT_TRUE(untilWritten(1)) << range(parameter).symbol;
            EXPECT_EQ(pluginUI.writes.front().port, range(parameter).port);
            EXPECT_NE(pluginUI.writes.front().value, range(parameter).standard);
        }
    }
}

TEST_F(WindowPageTest, PageOpensInPlaceOfTheHistoryAndCloses) {
    const Pixels before = pluginUI.pixels();
    open(Page::dynamics);
    const Pixels opened = pluginUI.pixels();
    EXPECT_NE(opened.part(layout.pageArea), before.part(layout.pageArea));
    EXPECT_EQ(opened.part(layout.curve), before.part(layout.curve));
    EXPECT_EQ(opened.part(layout.pad), before.part(layout.pad));
    open(Page::dynamics);
    EXPECT_EQ(pluginUI.pixels(), before);
    EXPECT_EQ(pluginUI.writes, Writes{});
}

TEST_F(WindowPageTest, PageStaysOpenWhenTheSizeChanges) {
    open(Page::output);
    ASSERT_EQ(pluginUI.resize(420, 400), 0);
    ASSERT_TRUE(pluginUI.idleUntil([&] { return pluginUI.layout().width == 420.0; }));
    pluginUI.settle();
    const auto small = Layout::of(420.0, 400.0, 1.0, Page::output);
    EXPECT_GT(pluginUI.pixels().part(small.cell(Parameter::link).dial).count(accent), 9U);
}

TEST_F(WindowPageTest, KeyboardOpensAPageAndChangesIt) {
    clickIn(tab(Page::history));
    pluginUI.settle();
    host.press(XK_Tab);
    host.press(XK_Left);
    host.press(XK_Tab);
    host.press(XK_space);
    ASSERT_TRUE(untilWritten(1));
    EXPECT_EQ(pluginUI.writes, (Writes{{range(Parameter::beat).port, 1.0F}}));
}

TEST_F(WindowPageTest, OpenSideChainShowsTheSpectrumThatItRequests) {
    open(Page::sideChain);
    // An effect that does not run could not answer.
    EXPECT_EQ(pluginUI.spectrumRequests, 0);
    open(Page::sideChain);
    for (int i = 0; i < 9; ++i) {
        pluginUI.run();
        pluginUI.settle();
    }
    EXPECT_EQ(pluginUI.spectrumRequests, 0);
    open(Page::sideChain);
    const Pixels silent = pluginUI.pixels();
    ASSERT_TRUE(pluginUI.idleUntil([&] {
        pluginUI.run();
        return pluginUI.spectrumRequests == 2;
    }));
    ASSERT_TRUE(pluginUI.idleUntil([&] {
        pluginUI.run();
        pluginUI.sendSpectrum(-30.0F);
        return pluginUI.pixels().part(layout.graph) != silent.part(layout.graph);
    }));
    // It falls when the effect stops.
    ASSERT_TRUE(pluginUI.idleUntil(
        [&] { return pluginUI.pixels().part(layout.graph) == silent.part(layout.graph); }));
    pluginUI.settle();
    open(Page::sideChain);
    const int requests = pluginUI.spectrumRequests;
    for (int i = 0; i < 9; ++i) {
        pluginUI.run();
        pluginUI.settle();
    }
    EXPECT_EQ(pluginUI.spectrumRequests, requests);
}

TEST_F(WindowPageTest, IgnoresEventsThatAreNoSpectrum) {
    open(Page::sideChain);
    const Pixels before = pluginUI.pixels();
    const std::array<std::uint32_t, 4> tooShort{8, 1, 2, 3};
    const auto port = EmbeddedPluginUI::portOf("midi_out");
    for (std::uint32_t format = 0; format < 60; ++format) {
        pluginUI.sendRaw(port, sizeof tooShort, format, tooShort.data());
        pluginUI.sendRaw(port, 0, format, nullptr);
    }
    pluginUI.sendSpectrum(std::numeric_limits<float>::quiet_NaN());
    pluginUI.settle();
    EXPECT_EQ(pluginUI.pixels(), before);
}

TEST_F(WindowPageTest, TabFlashesOnEachBeat) {
    pluginUI.send("beat", 1.0F);
    pluginUI.settle();
    const Rect& area = tab(Page::beats);
    const Pixels dark = pluginUI.pixels();
    EXPECT_EQ(dark.part(area).count(amber), 0U);
    for (int beat = 0; beat < 3; ++beat) {
        pluginUI.send("ducking", 12.0F);
        ASSERT_TRUE(pluginUI.idleUntil([&] {
            return pluginUI.pixels().part(area).count(amber) > 0;
        })) << beat;
        pluginUI.send("ducking", 3.0F);
        ASSERT_TRUE(pluginUI.idleUntil([&] {
            return pluginUI.pixels().part(area) == dark.part(area);
        })) << beat;
    }
}

}  // namespace
