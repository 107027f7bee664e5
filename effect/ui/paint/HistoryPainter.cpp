#include <algorithm>
#include <cmath>
#include <functional>
#include <string>

#include "effect/ui/paint/Painters.h"

namespace orvalo::effect::ui {

namespace {

constexpr double levelRange = 60.0;
constexpr double reductionRange = 30.0;
constexpr int divisions = 5;

double levelY(const Rect& plot, float level) {
    const double share = std::clamp(-static_cast<double>(level) / levelRange, 0.0, 1.0);
    return plot.y + share * plot.height;
}

double reductionY(const Rect& plot, float reduction) {
    const double share = std::clamp(static_cast<double>(reduction) / reductionRange, 0.0, 1.0);
    return plot.y + share * plot.height;
}

using Height = std::function<double(const Levels&)>;

void trace(cairo_t* context, const History& history, const Rect& plot, const Height& height) {
    const double step = plot.width / static_cast<double>(History::steps - 1);
    for (std::size_t i = 0; i < History::steps; ++i) {
        cairo_line_to(context, plot.x + static_cast<double>(i) * step, height(history.step(i)));
    }
}

void fillTo(const Brush& brush, const Rect& plot, double edge, const Colour& colour) {
    cairo_line_to(brush.context(), plot.right(), edge);
    cairo_line_to(brush.context(), plot.x, edge);
    cairo_close_path(brush.context());
    brush.use(colour);
    cairo_fill(brush.context());
}

void paintGrid(const Brush& brush, const Scene& scene, const Rect& plot, const Rect& panel) {
    const Layout& layout = scene.layout;
    const double high = 1.2 * layout.text;
    const double margin = 0.5 * layout.unit;
    for (int i = 1; i < divisions; ++i) {
        const double y = std::round(plot.y + plot.height * i / divisions);
        brush.fill({plot.x, y, plot.width, hairline(layout)}, theme::line.withAlpha(0.7));
        const double level = -levelRange * i / divisions;
        const double reduction = -reductionRange * i / divisions;
        brush.text({panel.x, y - 0.5 * high, plot.x - margin - panel.x, high},
                   std::to_string(std::lround(level)),
                   {.size = 0.8 * layout.text,
                    .colour = theme::dimText.withAlpha(0.75),
                    .align = Align::right});
        brush.text(
            {plot.right() + margin, y - 0.5 * high, panel.right() - plot.right() - margin, high},
            std::to_string(std::lround(reduction)),
            {.size = 0.8 * layout.text, .colour = accentOf(scene).withAlpha(0.85)});
    }
}

void paintLegend(const Brush& brush, const Scene& scene, const Rect& strip) {
    const Layout& layout = scene.layout;
    const TextStyle style{.size = 0.85 * layout.text, .colour = theme::dimText};
    struct Entry {
        const char* name;
        Colour colour;
    };
    const Colour accent = accentOf(scene);
    double x = strip.x;
    const double mark = 0.8 * layout.unit;
    for (const Entry& entry :
         {Entry{"Input", theme::level.withAlpha(0.7)}, Entry{"Output", theme::text},
          Entry{"Reduction", accent}, Entry{"Ducking", accent.withAlpha(0.45)}}) {
        const double wide = brush.textWidth(entry.name, style);
        if (x + 1.5 * mark + wide > strip.right()) {
            return;
        }
        brush.fillRound({x, strip.centerY() - 0.5 * mark, mark, mark}, 0.25 * mark, entry.colour);
        brush.text({x + 1.5 * mark, strip.y, wide + 1.0, strip.height}, entry.name, style);
        x += 1.5 * mark + wide + 1.5 * layout.unit;
    }
    const double wide = brush.textWidth("6 s", style);
    if (x + wide <= strip.right()) {
        brush.text({strip.right() - wide - 1.0, strip.y, wide + 1.0, strip.height}, "6 s", style);
    }
}

}  // namespace

void paintHistory(const Brush& brush, const Scene& scene) {
    const Layout& layout = scene.layout;
    const Rect& panel = layout.history;
    brush.fill(panel, theme::ground);
    brush.fillRound(panel, cornerRadius(layout), theme::panel);
    const double axis = 2.4 * layout.text;
    const double strip = 1.8 * layout.text;
    const double margin = layout.unit;
    const Rect plot{panel.x + axis, panel.y + margin, panel.width - 2.0 * axis,
                    panel.height - margin - strip};
    if (plot.isEmpty()) {
        return;
    }
    cairo_t* context = brush.context();
    paintGrid(brush, scene, plot, panel);
    paintLegend(brush, scene, {plot.x, plot.bottom(), plot.width, strip});
    cairo_save(context);
    cairo_rectangle(context, plot.x, plot.y, plot.width, plot.height);
    cairo_clip(context);

    const auto input = [&](const Levels& at) { return levelY(plot, at.input); };
    const auto output = [&](const Levels& at) { return levelY(plot, at.output); };
    const auto reduction = [&](const Levels& at) { return reductionY(plot, at.reduction); };
    const auto both = [&](const Levels& at) { return reductionY(plot, at.reduction + at.ducking); };
    const Colour accent = accentOf(scene);
    trace(context, scene.history, plot, input);
    fillTo(brush, plot, plot.bottom(), theme::level.withAlpha(0.45));
    trace(context, scene.history, plot, both);
    fillTo(brush, plot, plot.y, accent.withAlpha(0.22));
    trace(context, scene.history, plot, reduction);
    fillTo(brush, plot, plot.y, accent.withAlpha(0.35));
    trace(context, scene.history, plot, reduction);
    brush.use(accent);
    cairo_set_line_width(context, std::max(1.25, 0.2 * layout.unit));
    cairo_stroke(context);
    trace(context, scene.history, plot, output);
    brush.use(theme::text.withAlpha(0.9));
    cairo_set_line_width(context, std::max(1.0, 0.14 * layout.unit));
    cairo_stroke(context);
    cairo_restore(context);
    brush.fill({plot.x, plot.y, plot.width, hairline(layout)}, theme::track);
}

}  // namespace orvalo::effect::ui
