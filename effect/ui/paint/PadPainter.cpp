#include <algorithm>
#include <array>
#include <cmath>

#include "effect/ui/model/GraphAreas.h"
#include "effect/ui/paint/Painters.h"

namespace orvalo::effect::ui {

namespace {

void paintField(const Brush& brush, const Scene& scene, const Rect& area) {
    const Layout& layout = scene.layout;
    const double radius = cornerRadius(layout);
    const bool isHovered = scene.hovered.kind == Target::Kind::pad;
    brush.fillRound(area, radius, isHovered ? theme::raisedLight : theme::raised);
    // Lines that become denser and brighter upwards: the higher, the deeper.
    constexpr int lines = 7;
    for (int i = 1; i <= lines; ++i) {
        const double height = std::pow(static_cast<double>(i) / (lines + 1.0), 0.75);
        const double inset = 0.18 * area.width;
        brush.fill({area.x + inset, std::round(area.bottom() - height * area.height),
                    area.width - 2.0 * inset, hairline(layout)},
                   theme::dimText.withAlpha(0.1 + 0.3 * height));
    }
    const double line = 1.8 * layout.text;
    const Rect label{area.x, area.bottom() - line, area.width, line};
    const double lit = std::round(scene.padVelocity / 127.0 * area.height);
    const Rect above{area.x, area.y, area.width, area.height - lit};
    const Rect below{area.x, area.bottom() - lit, area.width, lit};
    const auto paintLabel = [&](const Rect& part, const Colour& colour) {
        const Clip clip(brush.context(), part);
        brush.text(label, "Pad", {.size = layout.text, .colour = colour, .align = Align::centre});
    };
    paintLabel(above, theme::text);
    if (lit > 0.0) {
        const Clip clip(brush.context(), below);
        brush.fillRound(area, radius, theme::ducking);
        paintLabel(below, theme::ground);
    }
    if (scene.hasVisibleFocus(padFocus)) {
        brush.strokeRound(area, radius, 1.5 * hairline(layout), theme::accent);
    }
}

void paintKeys(const Brush& brush, const Scene& scene, const Rect& area) {
    // The positions of the white keys C to C, and of the black keys, among the notes.
    constexpr std::array<std::size_t, 8> white{0, 2, 4, 5, 7, 9, 11, 12};
    constexpr std::array<std::size_t, 5> black{1, 3, 6, 8, 10};
    const double wide = area.width / static_cast<double>(white.size());
    const double gap = std::max(1.0, hairline(scene.layout));
    const double radius = 0.2 * scene.layout.unit;
    const auto key = [&](const Rect& rect, std::size_t note, const Colour& colour) {
        brush.fillRound(rect, radius, scene.heldNoteKeys.test(note) ? theme::ducking : colour);
    };
    for (std::size_t i = 0; i < white.size(); ++i) {
        const double left = std::round(area.x + static_cast<double>(i) * wide);
        const double right = std::round(area.x + static_cast<double>(i + 1) * wide);
        key({left, area.y, std::max(1.0, right - left - gap), area.height}, white.at(i),
            theme::dimText);
    }
    for (const std::size_t note : black) {
        // Between the white key below it and the next.
        const auto below = static_cast<double>(
            std::count_if(white.begin(), white.end(), [=](std::size_t one) { return one < note; }));
        const double centre = area.x + below * wide - 0.5 * gap;
        const Rect rect{std::round(centre - 0.33 * wide), area.y, std::round(0.66 * wide),
                        0.58 * area.height};
        brush.fillRound(rect.inset(-0.5 * gap, 0.0), radius, theme::panel);
        key(rect, note, theme::ground);
    }
}

}  // namespace

void paintPad(const Brush& brush, const Scene& scene) {
    const Layout& layout = scene.layout;
    brush.fill(layout.pad, theme::ground);
    brush.fillRound(layout.pad, cornerRadius(layout), theme::panel);
    const PadAreas areas = padAreas(layout);
    if (!areas.pad.isEmpty()) {
        paintField(brush, scene, areas.pad);
        paintKeys(brush, scene, areas.keys);
    }
}

}  // namespace orvalo::effect::ui
