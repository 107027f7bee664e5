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
    for (const double level : {0.0, -24.0, -48.0}) {
        brush.fill({area.x, std::round(plot.y(level)), area.width, line}, theme::line);
    }
    for (const Mark& mark : marks) {
        brush.fill({std::round(plot.x(mark.hertz)), area.y, line, area.height}, theme::line);
    }
}

void paintLabels(const Brush& brush, const Layout& layout, const FilterPlot& plot) {
    // In the colour that is legible on the spectrum, too.
    const TextStyle style{.size = smallText(layout, 0.8), .colour = theme::text};
    const double high = 1.2 * layout.text;
    for (const Mark& mark : marks) {
        brush.text({std::round(plot.x(mark.hertz)) + 0.4 * layout.unit, plot.area().bottom() - high,
                    3.0 * layout.text, high},
                   mark.text, style);
    }
}

/// The bands of the spectrum as a smooth path from left to right.
void traceSpectrum(cairo_t* context, const Scene& scene, const FilterPlot& plot) {
    const auto& levels = scene.spectrum.levels();
    double lastX = plot.area().x;
    double lastY = plot.y(levels.front());
    cairo_line_to(context, lastX, lastY);
    for (std::size_t band = 0; band < levels.size(); ++band) {
        const double x = plot.x(SpectrumBank::frequency(band));
        const double y = plot.y(levels[band]);
        const double middle = 0.5 * (lastX + x);
        cairo_curve_to(context, middle, lastY, middle, y, x, y);
        lastX = x;
        lastY = y;
    }
    cairo_line_to(context, plot.area().right(), lastY);
}

/// The response as a path from left to right.
void traceResponse(cairo_t* context, const Scene& scene, const FilterPlot& plot) {
    const int points = std::max(2, static_cast<int>(plot.area().width / 2.0));
    for (int i = 0; i <= points; ++i) {
        const double hertz = FilterPlot::hertzAt(static_cast<double>(i) / points);
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
    const Clip clip(context, area);
    paintGrid(brush, layout, plot);
    cairo_move_to(context, area.x, area.bottom());
    traceSpectrum(context, scene, plot);
    cairo_line_to(context, area.right(), area.bottom());
    cairo_close_path(context);
    brush.use(theme::level.withAlpha(0.55));
    cairo_fill(context);
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
    paintLabels(brush, layout, plot);
}

}  // namespace orvalo::effect::ui
