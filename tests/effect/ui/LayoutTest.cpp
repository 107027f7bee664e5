#include "effect/ui/model/Scene.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "effect/ui/model/Control.h"
#include "effect/ui/model/GraphAreas.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

struct Case {
    double width;
    double height;
    double scale;
};

const std::vector<Case> sensible{
    {320, 240, 1},   {640, 480, 1},   {800, 600, 1},   {1024, 768, 1},    {1920, 1440, 2},
    {1280, 960, 2},  {3840, 2880, 2}, {3840, 2160, 1}, {3840, 2160, 2.5}, {1920, 1080, 1},
    {1200, 400, 1},  {420, 800, 1},   {420, 400, 1},   {500, 500, 1},     {2560, 1440, 1},
    {2560, 1440, 2}, {640, 480, 2},   {333, 251, 1.25}};

bool isShown(const Layout& layout, Parameter parameter) {
    return pageOf(parameter).value_or(layout.page) == layout.page;
}

/// The layouts of all sizes with each page open.
std::vector<Layout> allLayouts() {
    std::vector<Layout> layouts;
    for (const auto& [width, height, scale] : sensible) {
        for (std::size_t page = 0; page < pageCount; ++page) {
            layouts.push_back(Layout::of(width, height, scale, static_cast<Page>(page)));
        }
    }
    return layouts;
}

std::string describe(const Layout& layout) {
    return std::to_string(layout.width) + " x " + std::to_string(layout.height) + " with " +
           nameOf(layout.page).name;
}

/// The areas that must not cover each other.
std::vector<Rect> partsOf(const Layout& layout) {
    std::vector<Rect> parts{layout.wordmark, layout.curve, layout.pad};
    if (layout.page == Page::history) {
        parts.push_back(layout.history);
    }
    if (!layout.graph.isEmpty()) {
        parts.push_back(layout.graph);
    }
    for (const auto& tab : layout.tab) {
        parts.push_back(tab);
    }
    for (const auto& field : headerFields) {
        parts.push_back(layout.*field.area);
    }
    for (std::size_t i = 0; i < parameterCount; ++i) {
        if (isShown(layout, static_cast<Parameter>(i))) {
            parts.push_back(layout.cells.at(i).area);
        }
    }
    for (const auto& meter : layout.meters) {
        parts.push_back(meter);
    }
    return parts;
}

bool isWithin(const Rect& inner, const Rect& outer) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.right() <= outer.right() &&
           inner.bottom() <= outer.bottom();
}

TEST(Layout, PartsLieInTheWindowAndDoNotOverlap) {
    for (const auto& layout : allLayouts()) {
        const auto parts = partsOf(layout);
        for (std::size_t i = 0; i < parts.size(); ++i) {
            EXPECT_FALSE(parts[i].isEmpty()) << i << " at " << describe(layout);
            EXPECT_TRUE(isWithin(parts[i], layout.whole())) << i << " at " << describe(layout);
            for (std::size_t j = 0; j < i; ++j) {
                EXPECT_FALSE(parts[i].intersects(parts[j]))
                    << i << " and " << j << " at " << describe(layout);
            }
        }
    }
}

TEST(Layout, KnobsAreRoundAndLieBetweenNameAndValue) {
    for (const auto& layout : allLayouts()) {
        for (std::size_t i = 1; i < parameterCount; ++i) {
            const auto& cell = layout.cells.at(i);
            if (!isShown(layout, static_cast<Parameter>(i))) {
                EXPECT_TRUE(cell.area.isEmpty()) << i << " at " << describe(layout);
                continue;
            }
            EXPECT_EQ(cell.dial.width, cell.dial.height);
            EXPECT_GE(cell.dial.width, 1.9 * layout.text) << i << " at " << describe(layout);
            EXPECT_GE(cell.dial.y, cell.label.bottom());
            EXPECT_LE(cell.dial.bottom(), cell.value.y + 1.0) << i << " at " << describe(layout);
            EXPECT_TRUE(isWithin(cell.value, cell.area));
            EXPECT_GE(cell.value.height, layout.text);
        }
    }
}

TEST(Layout, EveryControlIsOnOnePageAtMost) {
    std::size_t always = 0;
    std::size_t onPages = 0;
    for (std::size_t i = 0; i < parameterCount; ++i) {
        const auto page = pageOf(static_cast<Parameter>(i));
        always += page ? 0 : 1;
        EXPECT_NE(page, Page::history);
    }
    for (std::size_t page = 0; page < pageCount; ++page) {
        for (const Parameter parameter : parametersOf(static_cast<Page>(page))) {
            EXPECT_EQ(pageOf(parameter), static_cast<Page>(page));
            ++onPages;
        }
    }
    EXPECT_EQ(always, 14U);
    EXPECT_EQ(onPages, parameterCount - 14);
}

TEST(Layout, PageStandsWhereTheHistoryIs) {
    for (const auto& layout : allLayouts()) {
        const Layout closed = layout.with(Page::history);
        EXPECT_EQ(closed.history, closed.pageArea);
        EXPECT_EQ(layout.pageArea, closed.history) << describe(layout);
        EXPECT_EQ(layout.curve, closed.curve);
        EXPECT_EQ(layout.pad, closed.pad);
        for (const Parameter parameter : parametersOf(layout.page)) {
            EXPECT_TRUE(isWithin(layout.cell(parameter).area, layout.pageArea));
        }
    }
}

TEST(Layout, SwitchesAndChoicesLieBelowTheirNames) {
    for (const auto& layout : allLayouts()) {
        for (const Parameter parameter : parametersOf(layout.page)) {
            const Cell& cell = layout.cell(parameter);
            if (lookOf(parameter) == Look::toggle) {
                const Rect area = toggleArea(layout, parameter);
                EXPECT_TRUE(isWithin(area, cell.area)) << describe(layout);
                EXPECT_GE(area.y, cell.label.bottom());
                EXPECT_LE(area.bottom(), cell.value.y);
                EXPECT_GE(area.height, layout.text);
            } else if (lookOf(parameter) == Look::segments) {
                const auto areas = segmentAreas(layout, parameter);
                EXPECT_EQ(areas.size(), control(parameter).choices.size()) << describe(layout);
                double top = cell.label.bottom();
                for (const Rect& area : areas) {
                    EXPECT_TRUE(isWithin(area, cell.area)) << describe(layout);
                    EXPECT_GE(area.y, top);
                    EXPECT_GE(area.height, layout.text);
                    top = area.bottom();
                }
            }
        }
    }
}

TEST(Layout, ChoiceWithoutRoomForAllItsValuesShowsOne) {
    const auto layout = Layout::of(320.0, 150.0, 1.0, Page::dynamics);
    EXPECT_EQ(segmentAreas(layout, Parameter::oversampling).size(), 1U);
}

TEST(Layout, PageHasItsPictureFrom420By400) {
    for (const auto& [width, height, scale] : {Case{420, 400, 1},
                                               {640, 480, 1},
                                               {1280, 960, 2},
                                               {2560, 1440, 1},
                                               {2560, 1440, 2},
                                               {420, 800, 1},
                                               {1200, 400, 1}}) {
        for (const Page page : {Page::sideChain, Page::beats}) {
            const auto layout = Layout::of(width, height, scale, page);
            EXPECT_GE(layout.graph.height, 3.0 * layout.text) << describe(layout);
            EXPECT_GE(layout.graph.width, 12.0 * layout.text) << describe(layout);
        }
        EXPECT_TRUE(Layout::of(width, height, scale, Page::dynamics).graph.isEmpty());
    }
}

TEST(Layout, TextIsNeverTooSmallToRead) {
    for (const auto& [width, height, scale] : sensible) {
        EXPECT_GE(Layout::of(width, height, scale).text, Layout::leastText);
    }
    EXPECT_EQ(Layout::of(640, 480, 1).text, 12.0);
    EXPECT_EQ(Layout::of(1280, 960, 2).text, 24.0);
}

TEST(Layout, ScaleEnlargesEverythingProportionally) {
    const auto one = Layout::of(640, 480, 1);
    const auto two = Layout::of(1280, 960, 2);
    EXPECT_EQ(two.unit, 2.0 * one.unit);
    EXPECT_EQ(two.dragTravel, 400.0);
    EXPECT_NEAR(two.curve.width, 2.0 * one.curve.width, 2.0);
    EXPECT_NEAR(two.cell(Parameter::ratio).dial.x, 2.0 * one.cell(Parameter::ratio).dial.x, 2.0);
}

TEST(Layout, SpacingIsInEighths) {
    const auto layout = Layout::of(640, 480, 1);
    EXPECT_EQ(layout.unit, 8.0);
    EXPECT_EQ(layout.curve.x, 8.0);
    EXPECT_EQ(layout.history.x - layout.curve.right(), 8.0);
    EXPECT_EQ(layout.pad.x - layout.history.right(), 8.0);
    EXPECT_EQ(layout.pad.right(), 632.0);
    EXPECT_EQ(layout.panel(Section::compressor).area.y - layout.curve.bottom(), 8.0);
    EXPECT_EQ(layout.panel(Section::meters).area.bottom(), 472.0);
    EXPECT_EQ(layout.panel(Section::level).area.x, layout.panel(Section::meters).area.x);
}

TEST(Layout, EverySizeHasALayout) {
    for (const double width : {0.0, 1.0, 7.0, 60.0, 200.0, 16384.0}) {
        for (const double height : {0.0, 1.0, 7.0, 60.0, 200.0, 16384.0}) {
            for (const double scale : {0.5, 1.0, 8.0}) {
                const auto layout = Layout::of(width, height, scale);
                for (std::size_t page = 0; page < pageCount; ++page) {
                    for (const auto& part : partsOf(layout.with(static_cast<Page>(page)))) {
                        EXPECT_GE(part.height, 0.0);
                    }
                }
                EXPECT_GE(layout.presetList(13).width, 0.0);
                EXPECT_GT(layout.dragTravel, 0.0);
            }
        }
    }
}

TEST(Layout, PresetListShowsAllPresets) {
    for (const auto& [width, height, scale] : sensible) {
        const auto layout = Layout::of(width, height, scale);
        for (const std::size_t count : {1U, 13U, 36U}) {
            const Rect list = layout.presetList(count);
            EXPECT_TRUE(isWithin(list, layout.whole())) << count << " at " << width;
            for (std::size_t i = 0; i < count; ++i) {
                const Rect entry = layout.presetEntry(i, count);
                EXPECT_TRUE(isWithin(entry, list)) << i << " of " << count << " at " << width;
                EXPECT_GE(entry.height, layout.text);
                for (std::size_t j = 0; j < i; ++j) {
                    EXPECT_FALSE(entry.inset(0.01, 0.01).intersects(layout.presetEntry(j, count)));
                }
            }
        }
    }
}

TEST(Layout, LongPresetListScrollsByColumns) {
    constexpr std::size_t count = 200;
    for (const auto& [width, height, scale] : sensible) {
        auto layout = Layout::of(width, height, scale);
        const auto shownNow = [&, size = std::pair(width, height)] {
            std::vector<std::size_t> shown;
            for (std::size_t i = 0; i < count; ++i) {
                const Rect entry = layout.presetEntry(i, count);
                if (entry.isEmpty()) {
                    continue;
                }
                shown.push_back(i);
                EXPECT_TRUE(isWithin(entry, layout.presetList(count)));
                EXPECT_GE(entry.width, 11.0 * layout.text) << size.first << 'x' << size.second;
                for (const int side : {-1, 1}) {
                    EXPECT_FALSE(
                        layout.presetScroll(side, count).intersects(entry.inset(0.01, 0.01)));
                }
            }
            return shown;
        };
        const auto first = shownNow();
        if (first.size() == count) {
            EXPECT_GT(width, 1900.0);
            continue;
        }
        EXPECT_EQ(first.front(), 0U);
        EXPECT_TRUE(layout.presetScroll(-1, count).isEmpty());
        EXPECT_FALSE(layout.presetScroll(1, count).isEmpty());
        layout.showPreset(count - 1, count);
        EXPECT_EQ(shownNow().back(), count - 1);
        EXPECT_FALSE(layout.presetScroll(-1, count).isEmpty());
        EXPECT_TRUE(layout.presetScroll(1, count).isEmpty());
        layout.scrollPresets(1, count);
        EXPECT_EQ(shownNow().back(), count - 1);
        layout.showPreset(0, count);
        EXPECT_EQ(shownNow(), first);
        layout.scrollPresets(-1, count);
        EXPECT_EQ(shownNow(), first);
    }
}

TEST(Layout, TextFieldAndComplaintLieInTheWindow) {
    for (const auto& layout : allLayouts()) {
        for (std::size_t i = 1; i < parameterCount; ++i) {
            const auto parameter = static_cast<Parameter>(i);
            const Rect field = layout.entryField(parameter);
            EXPECT_TRUE(isWithin(field, layout.whole()));
            const Rect complaint = layout.complaint(field, 20.0 * layout.text);
            EXPECT_TRUE(isWithin(complaint, layout.whole()));
            EXPECT_FALSE(complaint.intersects(field));
        }
    }
}

}  // namespace
