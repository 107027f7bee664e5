#include <cmath>

#include "effect/ui/paint/Painters.h"

namespace orvalo::effect::ui {

namespace {

/// The mark of a page in use: its controls have other values than their defaults. That of the beats
/// flashes on each beat.
/// nameEnd: the right end of the page's name.
void paintMark(const Brush& brush, const Scene& scene, Page page, double nameEnd, double beat) {
    const Rect& area = scene.layout.tab.at(static_cast<std::size_t>(page));
    const double radius = std::max(1.5, 0.25 * scene.layout.unit);
    const double behind = nameEnd + 3.0 * radius;
    // Where the name takes all the room: in a corner.
    const bool isBehind = behind + 2.2 * radius <= area.right();
    const double x = isBehind ? behind : area.right() - 2.2 * radius;
    const double y = isBehind ? area.centerY() : area.y + 2.2 * radius;
    if (page == Page::beats && scene.values.isOn(Parameter::beat)) {
        brush.disc(x, y, radius, theme::ducking.withAlpha(0.45 + 0.55 * beat));
        if (beat > 0.0) {
            brush.disc(x, y, 2.1 * radius, theme::ducking.withAlpha(0.35 * beat));
        }
    } else if (isPageInUse(page, scene.values)) {
        brush.disc(x, y, radius, accentOf(scene));
    }
}

}  // namespace

void paintTabs(const Brush& brush, const Scene& scene, double beat) {
    const Layout& layout = scene.layout;
    brush.fill(layout.tabs, theme::ground);
    const double radius = 0.7 * cornerRadius(layout);
    for (std::size_t i = 0; i < pageCount; ++i) {
        const auto page = static_cast<Page>(i);
        const Rect& area = layout.tab.at(i);
        const bool isOpen = page == layout.page;
        const bool isHovered = scene.hovered.kind == Target::Kind::tab && scene.hovered.entry == i;
        if (isOpen || isHovered) {
            brush.fillRound(area, radius, isOpen ? theme::raised : theme::panel);
        }
        if (isOpen) {
            const double line = std::max(2.0, 0.25 * layout.unit);
            brush.fill({area.x + radius, area.bottom() - line,
                        std::max(0.0, area.width - 2.0 * radius), line},
                       accentOf(scene));
        }
        if (isOpen && scene.hasVisibleFocus(tabsFocus)) {
            brush.strokeRound(area, radius, 1.5 * hairline(layout), theme::accent);
        }
        const auto& name = nameOf(page);
        const TextStyle style{.size = smallText(layout, 0.9),
                              .colour = isOpen || isHovered ? theme::text : dimTextOf(layout),
                              .align = Align::centre};
        const bool isRoomy = brush.textWidth(name.name, style) <= area.width;
        const char* shown = isRoomy ? name.name : name.shortName;
        brush.text(area, shown, style);
        const double nameEnd = area.centerX() + 0.5 * brush.textWidth(shown, style);
        paintMark(brush, scene, page, nameEnd, beat);
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
