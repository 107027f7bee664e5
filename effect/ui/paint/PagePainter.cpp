#include <cmath>

#include "effect/ui/paint/Painters.h"

namespace orvalo::effect::ui {

namespace {

TextStyle nameStyle(const Layout& layout) {
    return {.size = smallText(layout, 0.9), .colour = dimTextOf(layout), .align = Align::centre};
}

/// The name that fits the tab.
const char* nameFor(const Brush& brush, const Layout& layout, std::size_t page) {
    const auto& name = nameOf(static_cast<Page>(page));
    const bool isRoomy = brush.textWidth(name.name, nameStyle(layout)) <= layout.tab.at(page).width;
    return isRoomy ? name.name : name.shortName;
}

double nameEnd(const Brush& brush, const Layout& layout, std::size_t page) {
    return layout.tab.at(page).centerX() +
           0.5 * brush.textWidth(nameFor(brush, layout, page), nameStyle(layout));
}

double markRadius(const Layout& layout) {
    return std::max(1.5, 0.25 * layout.unit);
}

/// Whether all tabs have room for the mark behind the name.
bool haveRoomForMarks(const Brush& brush, const Layout& layout) {
    for (std::size_t i = 0; i < pageCount; ++i) {
        if (nameEnd(brush, layout, i) + 5.0 * markRadius(layout) > layout.tab.at(i).right()) {
            return false;
        }
    }
    return true;
}

/// The mark of a page in use: its controls have other values than their defaults. That of the beats
/// flashes on each beat.
void paintMark(const Brush& brush, const Scene& scene, Page page, double x, double y, double beat) {
    const double radius = markRadius(scene.layout);
    if (page == Page::beats && scene.values.isOn(Parameter::beat)) {
        brush.disc(x, y, radius, theme::ducking.withAlpha(0.45 + 0.55 * beat));
        if (beat > 0.0) {
            brush.disc(x, y, 2.1 * radius, theme::ducking.withAlpha(0.35 * beat));
        }
    } else if (isPageInUse(page, scene.values)) {
        brush.disc(x, y, radius, accentOf(scene));
    }
}

void paintTab(const Brush& brush, const Scene& scene, std::size_t page) {
    const Layout& layout = scene.layout;
    const Rect& area = layout.tab.at(page);
    const double radius = 0.7 * cornerRadius(layout);
    const bool isOpen = static_cast<Page>(page) == layout.page;
    const bool isHovered = scene.hovered.kind == Target::Kind::tab && scene.hovered.entry == page;
    if (isOpen || isHovered) {
        brush.fillRound(area, radius, isOpen ? theme::raised : theme::panel);
    }
    if (isOpen) {
        const double line = std::max(2.0, 0.25 * layout.unit);
        brush.fill(
            {area.x + radius, area.bottom() - line, std::max(0.0, area.width - 2.0 * radius), line},
            accentOf(scene));
    }
    if (isOpen && scene.hasVisibleFocus(tabsFocus)) {
        brush.strokeRound(area, radius, 1.5 * hairline(layout), theme::accent);
    }
    TextStyle style = nameStyle(layout);
    if (isOpen || isHovered) {
        style.colour = theme::text;
    }
    brush.text(area, nameFor(brush, layout, page), style);
}

}  // namespace

void paintTabs(const Brush& brush, const Scene& scene, double beat) {
    const Layout& layout = scene.layout;
    brush.fill(layout.tabs, theme::ground);
    const double radius = markRadius(layout);
    // Else in a corner of each tab.
    const bool isBehind = haveRoomForMarks(brush, layout);
    for (std::size_t i = 0; i < pageCount; ++i) {
        paintTab(brush, scene, i);
        const Rect& area = layout.tab.at(i);
        const double x =
            isBehind ? nameEnd(brush, layout, i) + 3.0 * radius : area.right() - 2.2 * radius;
        const double y = isBehind ? area.centerY() : area.y + 2.2 * radius;
        paintMark(brush, scene, static_cast<Page>(i), x, y, beat);
    }
}

void paintGraph(const Brush& brush, const Scene& scene, double beat) {
    brush.fill(scene.layout.graph, theme::panel);
    brush.fillRound(scene.layout.graph, 0.7 * cornerRadius(scene.layout), theme::ground);
    if (scene.layout.page == Page::beats) {
        paintBeats(brush, scene, beat);
    } else {
        paintFilter(brush, scene);
    }
}

}  // namespace orvalo::effect::ui
