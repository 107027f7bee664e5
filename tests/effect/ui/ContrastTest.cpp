#include <cairo.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <utility>
#include <vector>

#include "effect/ui/model/Tip.h"
#include "effect/ui/paint/ScenePainter.h"
#include "tests/effect/ui/SceneFixture.h"
#include "tests/testing/Contrast.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;
using orvalo::testing::contrast;

/// Measures each text while the scene is drawn: the pixels that it changes, before and after.
class TextContrasts {
  public:
    struct Text {
        double x;
        double y;
        double contrast;
    };

    explicit TextContrasts(const Scene& scene)
        : width_(static_cast<std::size_t>(scene.layout.width)),
          picture_(cairo_image_surface_create(CAIRO_FORMAT_RGB24,
                                              static_cast<int>(scene.layout.width),
                                              static_cast<int>(scene.layout.height))),
          observer_(cairo_surface_create_observer(picture_, CAIRO_SURFACE_OBSERVER_NORMAL)) {
        const auto remember = [](cairo_surface_t* /*observer*/, cairo_surface_t* /*target*/,
                                 void* self) {
            auto& contrasts = *static_cast<TextContrasts*>(self);
            contrasts.before_ = contrasts.pixels();
        };
        cairo_surface_observer_add_paint_callback(observer_, remember, this);
        cairo_surface_observer_add_mask_callback(observer_, remember, this);
        cairo_surface_observer_add_fill_callback(observer_, remember, this);
        cairo_surface_observer_add_stroke_callback(observer_, remember, this);
        cairo_surface_observer_add_glyphs_callback(
            observer_,
            [](cairo_surface_t* /*observer*/, cairo_surface_t* /*target*/, void* self) {
                static_cast<TextContrasts*>(self)->measure();
            },
            this);
        before_ = pixels();
        cairo_t* context = cairo_create(observer_);
        paintScene(context, scene, 1.0);
        cairo_destroy(context);
    }
    ~TextContrasts() {
        cairo_surface_destroy(observer_);
        cairo_surface_destroy(picture_);
    }
    TextContrasts(const TextContrasts&) = delete;
    TextContrasts& operator=(const TextContrasts&) = delete;

    const std::vector<Text>& texts() const { return texts_; }

  private:
    std::vector<std::uint32_t> pixels() const {
        cairo_surface_flush(picture_);
        const auto height = static_cast<std::size_t>(cairo_image_surface_get_height(picture_));
        std::vector<std::uint32_t> result(width_ * height);
        std::memcpy(result.data(), cairo_image_surface_get_data(picture_), result.size() * 4);
        return result;
    }

    void measure() {
        auto after = pixels();
        // The strokes' cores: their edges are mixed with the ground.
        Text text{.x = 0.0, .y = 0.0, .contrast = 0.0};
        for (std::size_t i = 0; i < after.size(); ++i) {
            if (after[i] == before_[i]) {
                continue;
            }
            if (const double found = contrast(after[i], before_[i]); found > text.contrast) {
                const std::size_t row = i / width_;
                text = {.x = static_cast<double>(i % width_),
                        .y = static_cast<double>(row),
                        .contrast = found};
            }
        }
        if (text.contrast > 0.0) {
            texts_.push_back(text);
        }
        before_ = std::move(after);
    }

    std::size_t width_;
    cairo_surface_t* picture_;
    cairo_surface_t* observer_;
    std::vector<std::uint32_t> before_;
    std::vector<Text> texts_;
};

class ContrastTest : public orvalo::testing::SceneFixture {
  protected:
    void expectLegible(const char* what, std::size_t leastTexts) {
        constexpr double least = 4.5;
        scene.markAllChanged();
        const TextContrasts measured(scene);
        EXPECT_GE(measured.texts().size(), leastTexts) << what;
        for (const auto& text : measured.texts()) {
            EXPECT_GE(text.contrast, least) << what << " at " << text.x << ',' << text.y;
        }
    }

    /// Every state that has its own texts or colours.
    void expectAllLegible(std::size_t texts) {
        expectLegible("at first", texts);
        scene.levels = {.input = -9.0F, .output = 3.0F, .reduction = 8.0F, .ducking = 2.0F};
        scene.meterMemory.update(scene.levels, 1.0F, 0.0);
        expectLegible("overloaded", texts);
        editor.toggleHistoryPause();
        expectLegible("paused", texts + 1);
        editor.toggleHistoryPause();
        for (const auto parameter : {Parameter::enabled, Parameter::attack}) {
            editor.hover({.kind = Target::Kind::control, .parameter = parameter});
            scene.showsTip = true;
            expectLegible("hovered", texts + 1);
            scene.showsTip = false;
            editor.hover({.kind = Target::Kind::value, .parameter = parameter});
            expectLegible("value hovered", texts);
        }
        for (const auto kind : {Target::Kind::presetName, Target::Kind::pad,
                                Target::Kind::historySpan, Target::Kind::nothing}) {
            editor.hover({.kind = kind});
            expectLegible("hovered", texts);
        }
        for (const double height : {0.05, 0.1, 1.0}) {
            editor.notes().pressPad(height);
            expectLegible("pad", texts);
        }
        editor.notes().releasePad();
        editor.openList();
        expectLegible("list", texts + 2);
        editor.closeList();
        editor.beginEntry(Parameter::knee);
        expectLegible("selected text", texts + 1);
        scene.entry->entry = TextEntry("no number at all");
        editor.commitEntry();
        expectLegible("complaint", texts + 2);
        editor.cancelEntry();
        editor.set(Parameter::enabled, 0.0F);
        expectLegible("bypassed", texts + 1);
        editor.set(Parameter::enabled, 1.0F);
    }
};

TEST_F(ContrastTest, EveryTextIsLegible) {
    expectAllLegible(60);
}

TEST_F(ContrastTest, EveryTextOfThePagesIsLegible) {
    for (const auto& [width, height] : {std::pair(640.0, 480.0), {420.0, 400.0}, {320.0, 240.0}}) {
        for (const Page page : {Page::sideChain, Page::dynamics, Page::output, Page::beats}) {
            scene.layout = Layout::of(width, height, 1.0, page);
            expectLegible("at first", 50);
            for (std::size_t i = 14; i < parameterCount; ++i) {
                editor.set(static_cast<Parameter>(i), parameterRanges.at(i).maximum);
            }
            for (const Parameter parameter : parametersOf(page)) {
                editor.hover({.kind = Target::Kind::control, .parameter = parameter, .entry = 1});
                expectLegible(range(parameter).symbol, 50);
            }
            editor.hover({.kind = Target::Kind::tab, .entry = 2});
            editor.set(Parameter::enabled, 0.0F);
            expectLegible("bypassed", 50);
            for (std::size_t i = 0; i < parameterCount; ++i) {
                editor.set(static_cast<Parameter>(i), parameterRanges.at(i).standard);
            }
        }
    }
}

TEST_F(ContrastTest, EveryTextIsLegibleInALargeWindow) {
    scene.layout = Layout::of(1280.0, 960.0, 2.0);
    expectLegible("large", 60);
}

TEST_F(ContrastTest, EveryTextIsLegibleInTheSmallestWindow) {
    scene.layout = Layout::of(320.0, 240.0, 1.0);
    expectAllLegible(50);
}

}  // namespace
