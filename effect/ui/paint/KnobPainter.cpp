#include <algorithm>
#include <cmath>
#include <numbers>

#include "effect/ui/model/Control.h"
#include "effect/ui/model/GraphAreas.h"
#include "effect/ui/model/ValueMapping.h"
#include "effect/ui/model/ValueText.h"
#include "effect/ui/paint/Painters.h"

namespace orvalo::effect::ui {

namespace {

/// The angle of a position: 0 is at the lower left, 1 at the lower right, by way of the top.
double angleOf(double position) {
    return (0.75 + 1.5 * position) * std::numbers::pi;
}

/// The position at which the filled arc begins: 0 where the range has both signs, the maximum for
/// the low-pass and the range, which do nothing there, else the minimum.
double originOf(Parameter parameter) {
    if (parameter == Parameter::sideChainLowPass || parameter == Parameter::range) {
        return 1.0;
    }
    const bool hasBothSigns = range(parameter).minimum < 0.0F && range(parameter).maximum > 0.0F;
    return hasBothSigns ? positionOf(parameter, 0.0F) : 0.0;
}

/// The colour of what is set; dim where it has no effect.
Colour colourOf(const Scene& scene, Parameter parameter) {
    return isInForce(scene.values, parameter) ? accentOf(scene) : theme::inactive;
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
        brush.use(colourOf(scene, parameter));
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

/// A lever that is to the right while the switch is on.
void paintToggle(const Brush& brush, const Scene& scene, Parameter parameter, bool lit) {
    const Rect area = toggleArea(scene.layout, parameter);
    if (area.isEmpty()) {
        return;
    }
    const bool isOn = scene.values.isOn(parameter);
    const double radius = 0.5 * area.height;
    brush.fillRound(area, radius, isOn ? colourOf(scene, parameter) : theme::track);
    const double x = isOn ? area.right() - radius : area.x + radius;
    brush.disc(x, area.centerY(), 0.72 * radius, isOn || lit ? theme::text : theme::dimText);
}

/// The values of a choice, one below the other, the chosen one on a light ground.
void paintSegments(const Brush& brush, const Scene& scene, Parameter parameter, bool hovered) {
    const Layout& layout = scene.layout;
    const auto areas = segmentAreas(layout, parameter);
    const auto chosen = static_cast<std::size_t>(scene.values.whole(parameter));
    const auto& choices = control(parameter).choices;
    const double radius = 0.7 * cornerRadius(layout);
    const Rect& first = areas.front();
    brush.fillRound({first.x, first.y, first.width, areas.back().bottom() - first.y}, radius,
                    theme::raised);
    const TextStyle widest{.size = smallText(layout, 0.9), .colour = theme::text};
    const double room = first.width - 0.4 * layout.unit;
    const bool isRoomy = std::ranges::all_of(choices, [&](const Choice& choice) {
        return brush.textWidth(choice.name, widest) <= room;
    });
    for (std::size_t i = 0; i < areas.size(); ++i) {
        const bool hasAll = areas.size() > 1;
        const std::size_t shown = hasAll ? i : std::min(chosen, choices.size() - 1);
        const bool isChosen = hasAll && i == chosen;
        const bool isHovered = hovered && scene.hovered.entry == i;
        if (isChosen) {
            brush.fillRound(areas[i].inset(0.15 * layout.unit, 0.15 * layout.unit), radius,
                            isEnabled(scene) ? theme::accent : theme::dimText);
        } else if (isHovered) {
            brush.fillRound(areas[i].inset(0.15 * layout.unit, 0.15 * layout.unit), radius,
                            theme::raisedLight);
        }
        const Colour colour = isHovered || !hasAll ? theme::text : dimTextOf(layout);
        brush.text(areas[i].inset(0.2 * layout.unit, 0.0),
                   isRoomy ? choices[shown].name : choices[shown].shortName,
                   {.size = widest.size,
                    .colour = isChosen ? theme::ground : colour,
                    .align = Align::centre});
    }
}

}  // namespace

void paintControl(const Brush& brush, const Scene& scene, Parameter parameter) {
    const Layout& layout = scene.layout;
    const Cell& cell = layout.cell(parameter);
    const bool hovered = scene.hovered.parameter == parameter;
    const bool onKnob = hovered && scene.hovered.kind == Target::Kind::control;
    const bool onValue = hovered && scene.hovered.kind == Target::Kind::value;
    brush.fill(cell.area, theme::panel);
    if (scene.hasVisibleFocus(focusOf(parameter))) {
        brush.strokeRound(cell.area.inset(0.25 * layout.unit, 0.0), cornerRadius(layout),
                          1.5 * hairline(layout), theme::accent.withAlpha(0.8));
    }
    const Look look = lookOf(parameter);
    if (look == Look::segments) {
        paintSegments(brush, scene, parameter, onKnob);
    } else if (look == Look::toggle) {
        paintToggle(brush, scene, parameter, onKnob);
    } else {
        paintDial(brush, scene, parameter, onKnob);
    }

    const auto& how = control(parameter);
    const double margin = 0.25 * layout.unit;
    brush.fittingText(cell.label.inset(margin, 0.0), {how.name, how.shortName},
                      {.size = layout.text,
                       .colour = onKnob ? theme::text : dimTextOf(layout),
                       .align = Align::centre});
    if (look == Look::segments) {
        return;
    }
    if (onValue) {
        brush.fillRound(cell.value.inset(margin, 0.0), 0.5 * cornerRadius(layout), theme::raised);
    }
    const std::string full = valueText(parameter, scene.values[parameter]);
    const std::string brief = shortValueText(parameter, scene.values[parameter]);
    brush.fittingText(cell.value.inset(margin, 0.0), {full.c_str(), brief.c_str()},
                      {.size = layout.text, .colour = theme::text, .align = Align::centre});
}

}  // namespace orvalo::effect::ui
