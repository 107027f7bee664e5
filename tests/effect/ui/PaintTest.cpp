#include <cairo.h>

#include <cstdint>
#include <cstring>
#include <tuple>
#include <vector>

#include "effect/ui/model/GraphAreas.h"
#include "effect/ui/model/KeyInput.h"
#include "effect/ui/model/PointerInput.h"
#include "effect/ui/paint/Painters.h"
#include "effect/ui/paint/ScenePainter.h"
#include "tests/effect/ui/SceneFixture.h"

// fontconfig keeps its font data until the process ends, and cairo never frees the callbacks of an
// observer.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name that the sanitizer requires
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\nleak:cairo_surface_observer_add_\n";
}

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

/// A picture in memory.
class Picture {
  public:
    explicit Picture(const Layout& layout)
        : surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(layout.width),
                                              static_cast<int>(layout.height))),
          context_(cairo_create(surface_)) {}
    ~Picture() {
        cairo_destroy(context_);
        cairo_surface_destroy(surface_);
    }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    cairo_t* context() const { return context_; }

    std::vector<std::uint32_t> pixels() const {
        cairo_surface_flush(surface_);
        const auto width = static_cast<std::size_t>(cairo_image_surface_get_width(surface_));
        const auto height = static_cast<std::size_t>(cairo_image_surface_get_height(surface_));
        std::vector<std::uint32_t> pixels(width * height);
        std::memcpy(pixels.data(), cairo_image_surface_get_data(surface_), pixels.size() * 4);
        for (auto& pixel : pixels) {
            pixel &= 0xFFFFFFU;
        }
        return pixels;
    }

  private:
    cairo_surface_t* surface_;
    cairo_t* context_;
};

class PaintTest : public orvalo::testing::SceneFixture {
  protected:
    PaintTest() : picture(scene.layout), pointer(scene, editor), keys(scene, editor) {
        scene.markAllChanged();
        paint();
    }

    std::vector<Rect> paint() {
        auto drawn = paintScene(picture.context(), scene, now);
        scene.markDrawn();
        return drawn;
    }

    /// Expects the incrementally drawn picture to equal one drawn at once.
    void expectWhole(const char* when) {
        paint();
        Picture whole(scene.layout);
        Scene copy = scene;
        copy.markAllChanged();
        paintScene(whole.context(), copy, now);
        EXPECT_EQ(picture.pixels(), whole.pixels()) << when;
    }

    double now = 1.0;
    Picture picture;
    PointerInput pointer;
    KeyInput keys;
};

TEST_F(PaintTest, DrawingChangesEqualsDrawingEverything) {
    expectWhole("at the start");
    editor.receive(Parameter::threshold, -33.0F);
    expectWhole("after a value");
    pointer.move({.x = scene.layout.cell(Parameter::mix).dial.centerX(),
                  .y = scene.layout.cell(Parameter::mix).dial.centerY()});
    expectWhole("under the pointer");
    pointer.leave();
    editor.setHasKeyboard(true);
    keys.press({.key = Key::tab});
    expectWhole("with the focus");
    keys.press({.key = Key::tab});
    expectWhole("with the next focus");
    scene.levels = {.input = -9.0F, .output = 3.0F, .reduction = 8.0F, .ducking = 2.0F};
    scene.markChanged(Part::meters);
    scene.markChanged(Part::curve);
    expectWhole("with levels");
    scene.history.advance(0.0);
    scene.history.record(scene.levels, 0.1);
    scene.history.advance(3.0);
    scene.markChanged(Part::history);
    expectWhole("with a history");
    editor.toggleHistoryPause();
    expectWhole("with a paused history");
    editor.stepHistorySpan(1);
    expectWhole("with another span");
    editor.notes().pressPad(0.7);
    keys.press({.key = Key::character, .character = 'd', .code = 40});
    expectWhole("with notes");
    editor.notes().releaseKeys();
    editor.notes().releasePad();
    expectWhole("without notes");
    for (const std::size_t place : {padFocus, historyFocus, metersFocus}) {
        editor.focus(place, true);
        expectWhole("with the focus on a button");
    }
    scene.meterMemory.update({.input = 1.0F, .output = 2.0F}, 1.5F, 0.0);
    scene.markChanged(Part::meters);
    scene.markChanged(Part::truePeak);
    expectWhole("clipped");
    editor.resetMeters();
    expectWhole("with the meters reset");
    const CurvePoint point = thresholdPoint(scene);
    pointer.move({.x = point.x, .y = point.y});
    expectWhole("on the threshold's point");
    pointer.leave();
    editor.stepPreset(1);
    expectWhole("after a preset");
    editor.set(Parameter::enabled, 0.0F);
    expectWhole("switched off");
}

TEST_F(PaintTest, DrawingAPagesChangesEqualsDrawingEverything) {
    editor.setHasKeyboard(true);
    for (const Page page : {Page::sideChain, Page::dynamics, Page::output, Page::beats}) {
        editor.openPage(page);
        expectWhole("opened");
        for (const Parameter parameter : parametersOf(page)) {
            const auto& cell = scene.layout.cell(parameter);
            pointer.move({.x = cell.dial.centerX(), .y = cell.dial.centerY()});
            expectWhole("under the pointer");
            const auto& ends = range(parameter);
            editor.set(parameter, ends.standard == ends.maximum ? ends.minimum : ends.maximum);
            expectWhole(ends.symbol);
            editor.focus(focusOf(parameter), true);
            expectWhole("with the focus");
        }
        editor.focus(tabsFocus, true);
        expectWhole("with the focus on the tabs");
        const Rect& tab = scene.layout.tab.at(0);
        pointer.move({.x = tab.centerX(), .y = tab.centerY()});
        expectWhole("with the pointer on a tab");
        editor.receive(Parameter::hold, 0.0F);
        expectWhole("with the default of a control");
        // Changes of what other controls depend on.
        for (const Parameter parameter : {Parameter::autoMakeup, Parameter::ceilingOn,
                                          Parameter::midSide, Parameter::rms, Parameter::beat}) {
            editor.set(parameter, 1.0F - scene.values[parameter]);
            expectWhole(range(parameter).symbol);
        }
    }
    editor.openPage(Page::history);
    expectWhole("closed");
}

TEST_F(PaintTest, HistoryIsNotDrawnWhileAPageIsOpen) {
    editor.openPage(Page::dynamics);
    paint();
    scene.markChanged(Part::history);
    scene.markChanged(Part::graph);
    scene.markChanged(Parameter::beatTempo);
    EXPECT_EQ(paint(), std::vector<Rect>{});
}

TEST_F(PaintTest, BeatFlashesOnTheTabAndInThePicture) {
    editor.set(Parameter::beat, 1.0F);
    for (const Page page : {Page::history, Page::beats}) {
        editor.openPage(page);
        scene.beatLight = {};
        now = 1.0;
        paint();
        const auto dark = picture.pixels();
        scene.beatLight.update(0.0F, true, 1.0);
        scene.beatLight.update(12.0F, true, 2.0);
        now = 2.0;
        scene.markChanged(Part::tabs);
        scene.markChanged(Part::graph);
        paint();
        EXPECT_NE(picture.pixels(), dark);
        now = 3.0;
        scene.markChanged(Part::tabs);
        scene.markChanged(Part::graph);
        paint();
        EXPECT_EQ(picture.pixels(), dark);
    }
}

TEST_F(PaintTest, DrawingTheHeadersChangesEqualsDrawingEverything) {
    store.users["Mine"] = {.name = "Mine", .values = {{Parameter::mix, 3.0F}}, .isUser = true};
    editor.openList();
    expectWhole("with the list");
    const auto count = scene.presets.presets().size();
    for (const std::size_t marked : {std::size_t{0}, count - 1}) {
        editor.markEntry(marked);
        expectWhole("with another entry marked");
    }
    const Rect button = scene.layout.deleteEntry(count - 1, count);
    pointer.move({.x = button.centerX(), .y = button.centerY()});
    expectWhole("above the button that deletes");
    editor.deletePreset(count - 1);
    expectWhole("after deleting");
    editor.closeList();
    expectWhole("with the list closed");
    editor.beginSaving();
    expectWhole("with a field");
    keys.press({.key = Key::enter});
    expectWhole("with a complaint");
    keys.press({.key = Key::character, .character = 'x'});
    expectWhole("with a name");
    keys.press({.key = Key::enter});
    expectWhole("saved");
    editor.switchSound();
    expectWhole("with B");
    editor.copySound();
    expectWhole("with a notice");
    keys.press({.key = Key::undo});
    expectWhole("undone");
}

TEST_F(PaintTest, ScrollingAListEqualsDrawingEverything) {
    for (int i = 0; i < 97; ++i) {
        store.factory.push_back({"P" + std::to_string(i), {{Parameter::mix, 1.0F}}});
    }
    editor.openList();
    expectWhole("with the list");
    const auto first = picture.pixels();
    editor.scrollList(1);
    expectWhole("scrolled");
    EXPECT_NE(picture.pixels(), first);
    keys.press({.key = Key::end});
    expectWhole("at its end");
    editor.closeList();
    expectWhole("closed");
}

TEST_F(PaintTest, TheTextAboutATargetLiesInTheWindow) {
    for (const auto& [width, height, scale] : {std::tuple(320.0, 240.0, 1.0),
                                               {640.0, 480.0, 1.0},
                                               {1280.0, 960.0, 2.0},
                                               {420.0, 800.0, 1.0}}) {
        scene.layout = Layout::of(width, height, scale);
        scene.showsTip = true;
        const Brush brush(picture.context());
        std::vector<Target> targets;
        for (std::size_t i = 0; i < parameterCount; ++i) {
            targets.push_back(
                {.kind = Target::Kind::control, .parameter = static_cast<Parameter>(i)});
        }
        for (std::size_t i = 0; i < pageCount; ++i) {
            targets.push_back({.kind = Target::Kind::tab, .entry = i});
        }
        for (const auto kind :
             {Target::Kind::curve, Target::Kind::thresholdPoint, Target::Kind::ratioPoint,
              Target::Kind::history, Target::Kind::historySpan, Target::Kind::meters,
              Target::Kind::pad, Target::Kind::noteKeys}) {
            targets.push_back({.kind = kind});
        }
        for (const auto& target : targets) {
            scene.hovered = target;
            if (const auto page = pageOf(target.parameter)) {
                scene.layout = scene.layout.with(*page);
            }
            const Rect area = tipArea(brush, scene);
            EXPECT_GT(area.height, scene.layout.text);
            EXPECT_GE(area.x, 0.0);
            EXPECT_GE(area.y, 0.0);
            EXPECT_LE(area.right(), width);
            EXPECT_LE(area.bottom(), height) << static_cast<int>(target.kind) << ' ' << width;
        }
    }
}

TEST_F(PaintTest, LightsFlashAndFade) {
    scene.lightOut.update(1.0F, 0.5);
    scene.lightOut.update(2.0F, 1.0);
    scene.markChanged(Part::lightOut);
    const auto dark = picture.pixels();
    paint();
    EXPECT_NE(picture.pixels(), dark);
    now = 2.0;
    scene.markChanged(Part::lightOut);
    paint();
    EXPECT_EQ(picture.pixels(), dark);
}

TEST_F(PaintTest, DrawsOnlyChangedParts) {
    EXPECT_TRUE(paint().empty());
    scene.markChanged(Parameter::mix);
    EXPECT_EQ(paint(), std::vector<Rect>{scene.layout.cell(Parameter::mix).area});
}

TEST_F(PaintTest, OverlaysStayAboveRedrawnParts) {
    editor.openList();
    paint();
    const auto open = picture.pixels();
    scene.markChanged(Part::history);
    scene.markChanged(Part::curve);
    paint();
    std::size_t inside = 0;
    const Rect list = scene.layout.presetList(3).inset(8.0, 8.0);
    const auto after = picture.pixels();
    for (std::size_t i = 0; i < open.size(); ++i) {
        const auto x = static_cast<double>(i % 640);
        const std::size_t row = i / 640;
        const auto y = static_cast<double>(row);
        if (list.contains(x, y)) {
            EXPECT_EQ(after[i], open[i]) << x << ',' << y;
            ++inside;
        }
    }
    EXPECT_GT(inside, 1000U);
    editor.closeList();
    expectWhole("closed again");
}

TEST_F(PaintTest, NoLabelOfTheCurveLiesUnderIt) {
    const auto hasLabelInTheCorner = [this](double width, double height) {
        scene.layout = Layout::of(width, height, 1.0);
        scene.markAllChanged();
        const Picture drawn(scene.layout);
        paintScene(drawn.context(), scene, now);
        const auto pixels = drawn.pixels();
        const Rect area = CurvePlot(scene.layout).area();
        constexpr std::uint32_t red = 0x70;  // Text has more of it, the curve less.
        for (double y = area.bottom() - scene.layout.text; y < area.bottom(); ++y) {
            for (double x = area.x; x < area.x + 3.0 * scene.layout.text; ++x) {
                if (pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                           static_cast<std::size_t>(x)] >>
                    16U > red) {
                    return true;
                }
            }
        }
        return false;
    };
    EXPECT_TRUE(hasLabelInTheCorner(960.0, 720.0));
    EXPECT_FALSE(hasLabelInTheCorner(420.0, 315.0));
}

TEST_F(PaintTest, DrawsEverySize) {
    for (const double width : {1.0, 40.0, 320.0, 1000.0}) {
        for (const double height : {1.0, 40.0, 240.0, 1000.0}) {
            scene.layout = Layout::of(width, height, 1.0);
            scene.levels.input = -5.0F;
            editor.beginEntry(Parameter::output);
            scene.entry->entry = TextEntry("no number at all");
            editor.commitEntry();
            scene.notice = "Something that is longer than the window is wide";
            scene.markAllChanged();
            const Picture small(scene.layout);
            paintScene(small.context(), scene, now);
            EXPECT_EQ(cairo_status(small.context()), CAIRO_STATUS_SUCCESS);
        }
    }
}

}  // namespace
