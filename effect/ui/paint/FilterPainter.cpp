#include <algorithm>
#include <array>
#include <cmath>

#include "effect/ui/model/FilterPlot.h"
#include "effect/ui/paint/Painters.h"

namespace orvalo::effect::ui {

namespace {

struct Mark {
    double hertz;
    const char* text;
};
constexpr std::array<Mark, 3> marks{{{100.0, "100"}, {1000.0, "1k"}, {10000.0, "10k"}}};

void paintGrid(const Brush& brush, const Layout& layout, const FilterPlot& plot) {
    const Rect& area = plot.area();
    const double line = hairline(layout);
    constexpr double step = 24.0;
    for (double level = 0.0; level > FilterPlot::lowest; level -= step) {
        brush.fill({area.x, std::round(plot.y(level)), area.width, line}, theme::line);
    }
    const TextStyle style{.size = smallText(layout, 0.8), .colour = dimTextOf(layout)};
    const double high = 1.2 * layout.text;
    for (const Mark& mark : marks) {
        const double x = std::round(plot.x(mark.hertz));
        brush.fill({x, area.y, line, area.height}, theme::line);
        brush.text({x + 0.4 * layout.unit, area.bottom() - high, 3.0 * layout.text, high},
                   mark.text, style);
    }
}

/// The response as a path from left to right.
void traceResponse(cairo_t* context, const Scene& scene, const FilterPlot& plot) {
    const int points = std::max(2, static_cast<int>(plot.area().width / 2.0));
    for (int i = 0; i <= points; ++i) {
        const double hertz = plot.hertzAt(static_cast<double>(i) / points);
        cairo_line_to(context, plot.x(hertz), plot.y(sideChainGain(scene.values, hertz)));
    }
}

}  // namespace

void paintFilter(const Brush& brush, const Scene& scene) {
    const Layout& layout = scene.layout;
    const Rect area = layout.graph.inset(0.5 * layout.unit, 0.25 * layout.unit);
    if (area.isEmpty()) {
        return;
    }
    const FilterPlot plot(area);
    cairo_t* context = brush.context();
    cairo_save(context);
    cairo_rectangle(context, area.x, area.y, area.width, area.height);
    cairo_clip(context);
    paintGrid(brush, layout, plot);
    traceResponse(context, scene, plot);
    cairo_line_to(context, area.right(), area.bottom());
    cairo_line_to(context, area.x, area.bottom());
    cairo_close_path(context);
    brush.use(accentOf(scene).withAlpha(0.1));
    cairo_fill(context);
    traceResponse(context, scene, plot);
    brush.use(accentOf(scene));
    cairo_set_line_width(context, std::max(1.5, 0.22 * layout.unit));
    cairo_stroke(context);
    cairo_restore(context);
}

}  // namespace orvalo::effect::ui
