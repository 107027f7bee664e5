#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <string>

#include "effect/ui/model/GraphAreas.h"
#include "effect/ui/paint/Painters.h"

namespace orvalo::effect::ui {

namespace {

/// A scale of dB that falls from 0 at the top.
struct Scale {
    double range;
    double step;

    double y(const Rect& area, double decibels) const {
        return area.y + std::clamp(decibels / range, 0.0, 1.0) * area.height;
    }
};

constexpr Scale levelScale{.range = 60.0, .step = 12.0};
constexpr Scale reductionScale{.range = 24.0, .step = 12.0};

using Height = std::function<double(const Levels&)>;

void trace(cairo_t* context, const History& history, const Rect& area, const Height& height) {
    const std::size_t count = history.points();
    const double step = area.width / static_cast<double>(count - 1);
    for (std::size_t i = 0; i < count; ++i) {
        cairo_line_to(context, area.x + static_cast<double>(i) * step, height(history.point(i)));
    }
}

void fillTo(const Brush& brush, const Rect& area, double edge, const Colour& colour) {
    cairo_line_to(brush.context(), area.right(), edge);
    cairo_line_to(brush.context(), area.x, edge);
    cairo_close_path(brush.context());
    brush.use(colour);
    cairo_fill(brush.context());
}

void stroke(const Brush& brush, double width, const Colour& colour) {
    brush.use(colour);
    cairo_set_line_width(brush.context(), width);
    cairo_stroke(brush.context());
}

/// Lines at the multiples of the scale's step, with their numbers where there is room.
void paintGrid(const Brush& brush, const Scene& scene, const Rect& area, const Scale& scale) {
    const Layout& layout = scene.layout;
    const double high = 1.2 * layout.text;
    const double left = layout.history.x;
    const bool isRoomy = area.height * scale.step / scale.range > high;
    const int lines = static_cast<int>(std::lround(scale.range / scale.step));
    for (int index = 0; index < lines; ++index) {
        const double at = index * scale.step;
        const double y = std::round(scale.y(area, at));
        brush.fill({area.x, y, area.width, hairline(layout)},
                   index == 0 ? theme::track : theme::line.withAlpha(0.7));
        const bool fits = area.height > 2.0 * high && (isRoomy || index % 2 == 0);
        if (fits) {
            const double top = std::max(y - 0.5 * high, layout.history.y + 0.25 * layout.unit);
            brush.text({left, top, area.x - 0.5 * layout.unit - left, high},
                       std::to_string(std::lround(-at)),
                       {.size = smallText(layout, 0.8),
                        .colour = dimTextOf(layout),
                        .align = Align::right});
        }
    }
}

void paintLevels(const Brush& brush, const Scene& scene, const Rect& area) {
    const Layout& layout = scene.layout;
    cairo_t* context = brush.context();
    const History& history = scene.visibleHistory();
    const Clip clip(context, area);
    const auto input = [&](const Levels& at) { return levelScale.y(area, -at.input); };
    const auto output = [&](const Levels& at) { return levelScale.y(area, -at.output); };
    trace(context, history, area, input);
    fillTo(brush, area, area.bottom(), theme::level.withAlpha(0.45));
    trace(context, history, area, input);
    stroke(brush, std::max(1.0, 0.12 * layout.unit), theme::level);
    trace(context, history, area, output);
    stroke(brush, std::max(1.25, 0.18 * layout.unit), theme::text);
}

void paintStrip(const Brush& brush, const Scene& scene, const Rect& area) {
    const Layout& layout = scene.layout;
    cairo_t* context = brush.context();
    const History& history = scene.visibleHistory();
    const Clip clip(context, area);
    const auto reduction = [&](const Levels& at) { return reductionScale.y(area, at.reduction); };
    // The ducking adds to the reduction.
    const auto both = [&](const Levels& at) {
        return reductionScale.y(area, at.reduction + at.ducking);
    };
    trace(context, history, area, both);
    fillTo(brush, area, area.y, theme::ducking.withAlpha(0.85));
    trace(context, history, area, reduction);
    fillTo(brush, area, area.y, theme::panel);
    trace(context, history, area, reduction);
    fillTo(brush, area, area.y, accentOf(scene).withAlpha(0.55));
    trace(context, history, area, reduction);
    stroke(brush, std::max(1.0, 0.15 * layout.unit), accentOf(scene));
}

void paintLegend(const Brush& brush, const Scene& scene, const Rect& strip) {
    const Layout& layout = scene.layout;
    const TextStyle style{.size = smallText(layout, 0.85), .colour = dimTextOf(layout)};
    struct Entry {
        const char* name;
        const char* brief;
        Colour colour;
    };
    const std::array<Entry, 4> entries{{{"Input", "In", theme::level},
                                        {"Output", "Out", theme::text},
                                        {"Reduction", "Red.", accentOf(scene)},
                                        {"Ducking", "Duck", theme::ducking}}};
    const double mark = 0.8 * layout.unit;
    const auto width = [&](const auto name) {
        double sum = 0.0;
        for (const Entry& entry : entries) {
            sum += 1.5 * mark + brush.textWidth(entry.*name, style) + 1.5 * layout.unit;
        }
        return sum;
    };
    const auto name = width(&Entry::name) <= strip.width ? &Entry::name : &Entry::brief;
    double x = strip.x;
    for (const Entry& entry : entries) {
        const double wide = brush.textWidth(entry.*name, style);
        if (x + 1.5 * mark + wide > strip.right()) {
            return;
        }
        brush.fillRound({x, strip.centerY() - 0.5 * mark, mark, mark}, 0.25 * mark, entry.colour);
        brush.text({x + 1.5 * mark, strip.y, wide + 1.0, strip.height}, entry.*name, style);
        x += 1.5 * mark + wide + 1.5 * layout.unit;
    }
}

void paintSpan(const Brush& brush, const Scene& scene, const Rect& area) {
    const Layout& layout = scene.layout;
    const bool isHovered = scene.hovered.kind == Target::Kind::historySpan;
    const double radius = 0.5 * cornerRadius(layout);
    brush.fillRound(area, radius, isHovered ? theme::raisedLight : theme::raised);
    if (scene.hasVisibleFocus(historyFocus)) {
        brush.strokeRound(area, radius, 1.5 * hairline(layout), theme::accent);
    }
    brush.text(area, std::to_string(History::spans.at(scene.history.span())) + " s",
               {.size = smallText(layout, 0.85), .colour = theme::text, .align = Align::centre});
}

void paintPause(const Brush& brush, const Scene& scene, const Rect& area) {
    const TextStyle style{.size = scene.layout.text, .colour = theme::text, .align = Align::centre};
    const double wide = brush.textWidth("Paused", style) + 2.0 * scene.layout.unit;
    const double high = 1.7 * scene.layout.text;
    const Rect box{std::round(area.centerX() - 0.5 * wide), std::round(area.centerY() - 0.5 * high),
                   wide, high};
    brush.fillRound(box, 0.5 * cornerRadius(scene.layout), theme::raised);
    brush.text(box, "Paused", style);
}

}  // namespace

void paintHistory(const Brush& brush, const Scene& scene) {
    const Layout& layout = scene.layout;
    brush.fill(layout.history, theme::ground);
    brush.fillRound(layout.history, cornerRadius(layout), theme::panel);
    const HistoryAreas areas = historyAreas(layout);
    if (areas.levels.isEmpty() || areas.strip.isEmpty()) {
        return;
    }
    paintGrid(brush, scene, areas.levels, levelScale);
    paintGrid(brush, scene, areas.strip, reductionScale);
    paintLevels(brush, scene, areas.levels);
    paintStrip(brush, scene, areas.strip);
    paintLegend(brush, scene, areas.legend);
    paintSpan(brush, scene, areas.span);
    if (scene.pausedHistory) {
        paintPause(brush, scene, areas.levels);
    }
}

}  // namespace orvalo::effect::ui
