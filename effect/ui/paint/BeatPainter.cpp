#include <algorithm>
#include <cmath>

#include "effect/ui/model/BeatShape.h"
#include "effect/ui/paint/Painters.h"

namespace orvalo::effect::ui {

namespace {

void paintGrid(const Brush& brush, const Layout& layout, const Rect& area, double quarters) {
    const double line = hairline(layout);
    const TextStyle style{.size = smallText(layout, 0.8), .colour = dimTextOf(layout)};
    const double high = 1.2 * layout.text;
    const double wide = area.width / quarters;
    // A line and a label for each quarter note, or for each bar where these would touch.
    const int every = wide < 2.0 * layout.text ? 4 : 1;
    for (int i = 0; i < static_cast<int>(std::ceil(quarters)); i += every) {
        const double x = std::round(area.x + i * wide);
        brush.fill({x, area.y, line, area.height}, i % 4 == 0 ? theme::track : theme::line);
        brush.text({x + 0.4 * layout.unit, area.bottom() - high, 3.0 * layout.text, high},
                   std::to_string(i / 4 + 1) + "." + std::to_string(i % 4 + 1), style);
    }
}

}  // namespace

void paintBeats(const Brush& brush, const Scene& scene, double beat) {
    const Layout& layout = scene.layout;
    const Rect area = layout.graph.inset(0.75 * layout.unit, 0.5 * layout.unit);
    if (area.isEmpty()) {
        return;
    }
    const BeatShape shape(scene.values);
    const bool isOn = scene.values.isOn(Parameter::beat) && isEnabled(scene);
    const Colour colour = isOn ? theme::ducking : theme::inactive;
    cairo_t* context = brush.context();
    cairo_save(context);
    cairo_rectangle(context, area.x, area.y, area.width, area.height);
    cairo_clip(context);
    paintGrid(brush, layout, area, shape.span());
    // The depth of full height: a shallow ducking is a low wave.
    const double full = std::max(24.0, static_cast<double>(scene.values[Parameter::duckDepth]));
    const double room = area.height - 1.4 * layout.text;
    const auto trace = [&] {
        const int points = std::max(2, static_cast<int>(area.width));
        for (int i = 0; i <= points; ++i) {
            const double share = static_cast<double>(i) / points;
            const double depth = shape.duckingAt(share * shape.span());
            cairo_line_to(context, area.x + share * area.width, area.y + depth / full * room);
        }
    };
    cairo_move_to(context, area.x, area.y);
    trace();
    cairo_line_to(context, area.right(), area.y);
    cairo_close_path(context);
    brush.use(colour.withAlpha(isOn ? 0.3 + 0.5 * beat : 0.2));
    cairo_fill(context);
    trace();
    brush.use(colour);
    cairo_set_line_width(context, std::max(1.5, 0.2 * layout.unit));
    cairo_stroke(context);
    cairo_restore(context);
    if (!isOn) {
        brush.text(
            {area.x, area.bottom() - 2.8 * layout.text, area.width, 1.5 * layout.text},
            "Off: switch Beat on to duck in time",
            {.size = smallText(layout, 0.9), .colour = dimTextOf(layout), .align = Align::centre});
    }
}

}  // namespace orvalo::effect::ui
