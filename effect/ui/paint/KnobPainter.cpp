#include <cmath>
#include <numbers>

#include "effect/ui/model/Control.h"
#include "effect/ui/model/ValueMapping.h"
#include "effect/ui/model/ValueText.h"
#include "effect/ui/paint/Painters.h"

namespace orvalo::effect::ui {

namespace {

/// The angle of a position: 0 is at the lower left, 1 at the lower right, by way of the top.
double angleOf(double position) {
    return (0.75 + 1.5 * position) * std::numbers::pi;
}

/// The position at which the filled arc begins: 0 dB for the output gain, else the minimum.
double originOf(Parameter parameter) {
    return parameter == Parameter::output ? positionOf(parameter, 0.0F) : 0.0;
}

void paintDial(const Brush& brush, const Scene& scene, Parameter parameter, bool lit) {
    const Rect& dial = scene.layout.cell(parameter).dial;
    if (dial.isEmpty()) {
        return;
    }
    const double size = dial.width;
    const double x = dial.centerX();
    const double y = dial.centerY();
    const double width = std::max(1.5, 0.085 * size);
    const double radius = 0.5 * (size - width);
    const double position = positionOf(parameter, scene.values[parameter]);
    const double origin = originOf(parameter);
    cairo_t* context = brush.context();
    cairo_set_line_width(context, width);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
    brush.use(theme::track);
    cairo_new_sub_path(context);
    cairo_arc(context, x, y, radius, angleOf(0.0), angleOf(1.0));
    cairo_stroke(context);
    if (position != origin) {
        brush.use(accentOf(scene));
        cairo_new_sub_path(context);
        cairo_arc(context, x, y, radius, angleOf(std::min(origin, position)),
                  angleOf(std::max(origin, position)));
        cairo_stroke(context);
    }
    brush.disc(x, y, radius - 1.25 * width, lit ? theme::raisedLight : theme::raised);
    const double angle = angleOf(position);
    const double outer = radius - 1.9 * width;
    const double inner = 0.35 * radius;
    brush.use(theme::text);
    cairo_set_line_width(context, std::max(1.25, 0.06 * size));
    cairo_move_to(context, x + inner * std::cos(angle), y + inner * std::sin(angle));
    cairo_line_to(context, x + outer * std::cos(angle), y + outer * std::sin(angle));
    cairo_stroke(context);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_BUTT);
}

}  // namespace

void paintKnob(const Brush& brush, const Scene& scene, Parameter parameter) {
    const Layout& layout = scene.layout;
    const Cell& cell = layout.cell(parameter);
    const bool hovered = scene.hovered.parameter == parameter;
    const bool onKnob = hovered && scene.hovered.kind == Target::Kind::control;
    const bool onValue = hovered && scene.hovered.kind == Target::Kind::value;
    brush.fill(cell.area, theme::panel);
    if (scene.hasKeyboard && scene.showsFocus && scene.focusedControl() == parameter) {
        brush.strokeRound(cell.area.inset(0.25 * layout.unit, 0.0), cornerRadius(layout),
                          1.5 * hairline(layout), theme::accent.withAlpha(0.8));
    }
    paintDial(brush, scene, parameter, onKnob);

    const auto& how = control(parameter);
    const double margin = 0.25 * layout.unit;
    brush.fittingText(cell.label.inset(margin, 0.0), {how.name, how.shortName},
                      {.size = layout.text,
                       .colour = onKnob ? theme::text : dimTextOf(layout),
                       .align = Align::centre});
    if (onValue) {
        brush.fillRound(cell.value.inset(margin, 0.0), 0.5 * cornerRadius(layout), theme::raised);
    }
    const std::string full = valueText(parameter, scene.values[parameter]);
    const std::string brief = shortValueText(parameter, scene.values[parameter]);
    brush.fittingText(cell.value.inset(margin, 0.0), {full.c_str(), brief.c_str()},
                      {.size = layout.text, .colour = theme::text, .align = Align::centre});
}

}  // namespace orvalo::effect::ui
