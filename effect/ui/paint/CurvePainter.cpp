#include <algorithm>
#include <cmath>
#include <string>

#include "effect/ui/model/GraphAreas.h"
#include "effect/ui/model/TransferCurve.h"
#include "effect/ui/paint/Painters.h"

namespace orvalo::effect::ui {

namespace {

constexpr float lowest = CurvePlot::lowest;
constexpr float highest = CurvePlot::highest;
constexpr float gridStep = 12.0F;
constexpr int gridLines = 5;

void paintGrid(const Brush& brush, const Layout& layout, const CurvePlot& plot) {
    const double width = hairline(layout);
    const TextStyle style{.size = smallText(layout, 0.8), .colour = dimTextOf(layout)};
    const Rect& area = plot.area();
    // Else the labels would touch: only every second one is drawn.
    const bool isRoomy = area.width / 6.0 > 2.4 * layout.text;
    for (int index = 0; index < gridLines; ++index) {
        const float level = lowest + gridStep * static_cast<float>(index + 1);
        const Colour colour = level == 0.0F ? theme::track : theme::line.withAlpha(0.7);
        const double x = std::round(plot.x(level));
        const double y = std::round(plot.y(level));
        brush.fill({x, area.y, width, area.height}, colour);
        brush.fill({area.x, y, area.width, width}, colour);
        if (!isRoomy && index % 2 != 0) {
            continue;
        }
        const std::string text = std::to_string(std::lround(level));
        const double high = 1.2 * layout.text;
        const double wide = brush.textWidth(text, style) + 1.0;
        const double gap = 0.4 * layout.unit;
        // Nearer to the corner the curve would cross it.
        if (x - gap - wide >= area.x + high) {
            brush.text({x - gap - wide, area.bottom() - high, wide, high}, text, style);
        }
        if (index > 0) {
            brush.text({area.x + gap, y, wide, high}, text, style);
        }
    }
}

void tracePath(cairo_t* context, const Scene& scene, const CurvePlot& plot) {
    const int points = std::max(2, static_cast<int>(plot.area().width / 2.0));
    for (int i = 0; i <= points; ++i) {
        const float level =
            lowest + (highest - lowest) * static_cast<float>(i) / static_cast<float>(points);
        cairo_line_to(context, plot.x(level), plot.y(steadyOutput(scene.values, level)));
    }
}

void paintDot(const Brush& brush, const Scene& scene, const CurvePlot& plot) {
    const float input = scene.levels.input;
    if (input <= lowest) {
        return;
    }
    const float output =
        input + gainInForce(scene.values, scene.levels.reduction, scene.levels.ducking);
    const double radius = std::max(2.5, 0.5 * scene.layout.unit);
    const double x = std::min(plot.x(input), plot.area().right() - radius);
    const double y =
        std::clamp(plot.y(output), plot.area().y + radius, plot.area().bottom() - radius);
    brush.disc(x, y, 1.9 * radius, accentOf(scene).withAlpha(0.3));
    brush.disc(x, y, radius, theme::text);
}

/// A ring that can be dragged.
void paintPoint(const Brush& brush, const Scene& scene, const CurvePoint& point,
                Target::Kind kind) {
    const bool isHovered = scene.hovered.kind == kind;
    const double radius = std::max(3.0, 0.55 * scene.layout.unit);
    brush.disc(point.x, point.y, radius, isHovered ? theme::text : theme::accent);
    brush.disc(point.x, point.y, radius - std::max(1.25, 0.2 * scene.layout.unit),
               isHovered ? theme::accent : theme::panel);
}

}  // namespace

void paintCurve(const Brush& brush, const Scene& scene) {
    const Layout& layout = scene.layout;
    const Rect& area = layout.curve;
    brush.fill(area, theme::ground);
    brush.fillRound(area, cornerRadius(layout), theme::panel);
    const CurvePlot plot(layout);
    if (plot.area().isEmpty()) {
        return;
    }
    cairo_t* context = brush.context();
    const Clip clip(context, plot.area());
    paintGrid(brush, layout, plot);
    brush.line(plot.x(lowest), plot.y(lowest), plot.x(highest), plot.y(highest), hairline(layout),
               theme::track);

    const Colour accent = accentOf(scene);
    if (isEnabled(scene)) {
        const double x = std::round(plot.x(scene.values[Parameter::threshold]));
        brush.fill({x, plot.area().y, hairline(layout), plot.area().height},
                   accent.withAlpha(0.35));
    }
    tracePath(context, scene, plot);
    cairo_line_to(context, plot.area().right(), plot.area().bottom());
    cairo_line_to(context, plot.area().x, plot.area().bottom());
    cairo_close_path(context);
    brush.use(accent.withAlpha(0.1));
    cairo_fill(context);
    tracePath(context, scene, plot);
    brush.use(accent);
    cairo_set_line_width(context, std::max(1.5, 0.25 * layout.unit));
    cairo_stroke(context);
    if (isEnabled(scene)) {
        paintPoint(brush, scene, thresholdPoint(scene), Target::Kind::thresholdPoint);
        paintPoint(brush, scene, ratioPoint(scene), Target::Kind::ratioPoint);
    }
    paintDot(brush, scene, plot);
    if (!isEnabled(scene)) {
        // Below the diagonal line of the bypassed effect.
        const Rect below{plot.area().centerX(), plot.area().centerY(), 0.5 * plot.area().width,
                         0.5 * plot.area().height};
        brush.text(below, "Bypassed",
                   {.size = layout.text, .colour = dimTextOf(layout), .align = Align::centre});
    }
}

}  // namespace orvalo::effect::ui
