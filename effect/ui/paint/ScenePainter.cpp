#include "effect/ui/paint/ScenePainter.h"

#include <algorithm>

#include "effect/ui/paint/Painters.h"

namespace orvalo::effect::ui {

namespace {

Rect areaOf(const Layout& layout, std::size_t part) {
    switch (static_cast<Part>(part)) {
        case Part::header:
            return layout.header;
        case Part::curve:
            return layout.curve;
        case Part::history:
            return layout.history;
        case Part::meters: {
            const Rect& first = layout.meters.front();
            return {first.x, first.y, first.width, layout.meters.back().bottom() - first.y};
        }
        case Part::lightIn:
            return layout.panel(Section::ducking).title;
        case Part::lightOut:
            return layout.panel(Section::trigger).title;
        case Part::truePeak:
            // With the ring that marks the focus.
            return layout.panel(Section::meters).title.inset(-0.5 * layout.unit, 0.0);
        case Part::pad:
            return layout.pad;
        case Part::tabs:
            return layout.tabs;
        case Part::graph:
            return layout.graph;
        case Part::firstControl:
            break;
    }
    return layout.cells.at(part - partOf(Parameter::enabled)).area;
}

void paintPart(const Brush& brush, const Scene& scene, std::size_t part, double now) {
    switch (static_cast<Part>(part)) {
        case Part::header:
            return paintHeader(brush, scene);
        case Part::curve:
            return paintCurve(brush, scene);
        case Part::history:
            return paintHistory(brush, scene);
        case Part::meters:
            return paintMeters(brush, scene);
        case Part::lightIn:
            return paintTitle(brush, scene, Section::ducking, scene.lightIn.brightness(now));
        case Part::lightOut:
            return paintTitle(brush, scene, Section::trigger, scene.lightOut.brightness(now));
        case Part::truePeak:
            return paintTitle(brush, scene, Section::meters, 0.0);
        case Part::pad:
            return paintPad(brush, scene);
        case Part::tabs:
            return paintTabs(brush, scene, scene.beatLight.brightness(now));
        case Part::graph:
            return paintGraph(brush, scene, scene.beatLight.brightness(now));
        case Part::firstControl:
            return paintSwitch(brush, scene);
    }
    paintControl(brush, scene, static_cast<Parameter>(part - partOf(Parameter::enabled)));
}

void paintGround(const Brush& brush, const Scene& scene) {
    brush.fill(scene.layout.whole(), theme::ground);
    brush.fillRound(scene.layout.pageArea, cornerRadius(scene.layout), theme::panel);
    for (std::size_t i = 0; i < sectionCount; ++i) {
        const auto section = static_cast<Section>(i);
        paintPanel(brush, scene, section);
        paintTitle(brush, scene, section, 0.0);
    }
}

std::vector<Rect> overlays(const Brush& brush, const Scene& scene) {
    std::vector<Rect> areas;
    if (scene.list) {
        areas.push_back(scene.layout.presetList(scene.presets.presets().size()));
    }
    if (scene.entry) {
        areas.push_back(scene.entryField());
        areas.push_back(entryLineArea(brush, scene));
    }
    if (!scene.notice.empty()) {
        areas.push_back(noticeArea(brush, scene));
    }
    if (scene.showsTip) {
        areas.push_back(tipArea(brush, scene));
    }
    return areas;
}

}  // namespace

std::vector<Rect> paintScene(cairo_t* context, const Scene& scene, double now) {
    const Brush brush(context);
    std::vector<Rect> drawn;
    if (scene.allChanged) {
        paintGround(brush, scene);
        drawn.push_back(scene.layout.whole());
    }
    for (std::size_t part = 0; part < partCount; ++part) {
        if (!scene.allChanged && !scene.changed.test(part)) {
            continue;
        }
        const Rect area = areaOf(scene.layout, part);
        if (area.isEmpty()) {
            continue;
        }
        const Clip clip(context, area);
        paintPart(brush, scene, part, now);
        drawn.push_back(area);
    }
    // Redraw the overlays if a part below them was drawn or they may have changed themselves.
    bool overlaid =
        scene.list.has_value() && scene.changed.test(static_cast<std::size_t>(Part::header));
    for (const Rect& overlay : overlays(brush, scene)) {
        overlaid = overlaid || std::any_of(drawn.begin(), drawn.end(), [&](const Rect& area) {
                       return area.intersects(overlay);
                   });
    }
    if (overlaid) {
        if (scene.list) {
            paintPresetList(brush, scene);
        }
        if (scene.entry) {
            paintEntry(brush, scene);
        }
        paintNotice(brush, scene);
        if (scene.showsTip) {
            paintTip(brush, scene);
        }
        for (const Rect& overlay : overlays(brush, scene)) {
            drawn.push_back(overlay);
        }
    }
    return drawn;
}

}  // namespace orvalo::effect::ui
