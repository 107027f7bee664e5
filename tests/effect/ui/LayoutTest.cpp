#include "effect/ui/model/Scene.h"

#include <gtest/gtest.h>

#include <vector>

#include "effect/ui/model/Control.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

struct Case {
    double width;
    double height;
    double scale;
};

const std::vector<Case> sensible{
    {320, 240, 1},  {640, 480, 1},   {800, 600, 1},   {1024, 768, 1},    {1920, 1440, 2},
    {1280, 960, 2}, {3840, 2880, 2}, {3840, 2160, 1}, {3840, 2160, 2.5}, {1920, 1080, 1},
    {1200, 400, 1}, {420, 800, 1},   {500, 500, 1},   {640, 480, 2},     {333, 251, 1.25}};

/// The areas that must not cover each other.
std::vector<Rect> partsOf(const Layout& layout) {
    std::vector<Rect> parts{layout.wordmark, layout.curve, layout.history, layout.pad};
    for (const auto& field : headerFields) {
        parts.push_back(layout.*field.area);
    }
    for (const auto& cell : layout.cells) {
        parts.push_back(cell.area);
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
    for (const auto& [width, height, scale] : sensible) {
        const auto layout = Layout::of(width, height, scale);
        const auto parts = partsOf(layout);
        for (std::size_t i = 0; i < parts.size(); ++i) {
            EXPECT_FALSE(parts[i].isEmpty()) << i << " at " << width << 'x' << height;
            EXPECT_TRUE(isWithin(parts[i], layout.whole()))
                << i << " at " << width << 'x' << height;
            for (std::size_t j = 0; j < i; ++j) {
                EXPECT_FALSE(parts[i].intersects(parts[j]))
                    << i << " and " << j << " at " << width << 'x' << height;
            }
        }
    }
}

TEST(Layout, KnobsAreRoundAndLieBetweenNameAndValue) {
    for (const auto& [width, height, scale] : sensible) {
        const auto layout = Layout::of(width, height, scale);
        for (std::size_t i = 1; i < shownParameterCount; ++i) {
            const auto& cell = layout.cells.at(i);
            EXPECT_EQ(cell.dial.width, cell.dial.height);
            EXPECT_GE(cell.dial.width, 1.9 * layout.text) << width << 'x' << height;
            EXPECT_GE(cell.dial.y, cell.label.bottom());
            EXPECT_LE(cell.dial.bottom(), cell.value.y + 1.0) << width << 'x' << height;
            EXPECT_TRUE(isWithin(cell.value, cell.area));
            EXPECT_GE(cell.value.height, layout.text);
        }
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
                for (const auto& part : partsOf(layout)) {
                    EXPECT_GE(part.height, 0.0);
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
        for (const std::size_t count : {1U, 13U, 40U}) {
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

TEST(Layout, TextFieldAndComplaintLieInTheWindow) {
    for (const auto& [width, height, scale] : sensible) {
        const auto layout = Layout::of(width, height, scale);
        for (std::size_t i = 1; i < shownParameterCount; ++i) {
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
