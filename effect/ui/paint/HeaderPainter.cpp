#include <cmath>
#include <numbers>

#include "effect/ui/paint/Painters.h"

namespace orvalo::effect::ui {

namespace {

using Kind = Target::Kind;

bool isHovered(const Scene& scene, Kind kind) {
    return scene.hovered.kind == kind;
}

bool isFocused(const Scene& scene, Focus focus) {
    return scene.hasVisibleFocus(static_cast<std::size_t>(focus));
}

void paintButton(const Brush& brush, const Scene& scene, const Rect& area, bool hovered,
                 bool focused) {
    const double radius = cornerRadius(scene.layout);
    brush.fillRound(area, radius, hovered ? theme::raisedLight : theme::raised);
    if (focused) {
        brush.strokeRound(area, radius, 1.5 * hairline(scene.layout), theme::accent);
    }
}

void paintChevron(const Brush& brush, const Rect& area, double direction, double unit) {
    const double reach = 0.42 * unit;
    cairo_t* context = brush.context();
    brush.use(theme::text);
    cairo_set_line_width(context, 0.22 * unit);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
    cairo_move_to(context, area.centerX() - 0.5 * direction * reach, area.centerY() - reach);
    cairo_line_to(context, area.centerX() + 0.5 * direction * reach, area.centerY());
    cairo_line_to(context, area.centerX() - 0.5 * direction * reach, area.centerY() + reach);
    cairo_stroke(context);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_BUTT);
    cairo_set_line_join(context, CAIRO_LINE_JOIN_MITER);
}

/// An arrow that turns back (-1) or forth (1).
void paintTurn(const Brush& brush, const Rect& area, double direction, double unit,
               const Colour& colour) {
    const double radius = 0.62 * unit;
    const double head = 0.4 * unit;
    cairo_t* context = brush.context();
    cairo_save(context);
    cairo_translate(context, area.centerX(), area.centerY() + 0.2 * unit);
    cairo_scale(context, direction, 1.0);
    brush.use(colour);
    cairo_set_line_width(context, 0.22 * unit);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
    cairo_new_sub_path(context);
    cairo_arc(context, 0.0, 0.0, radius, 0.85 * std::numbers::pi, 2.0 * std::numbers::pi);
    cairo_line_to(context, radius, 0.15 * unit);
    cairo_stroke(context);
    cairo_move_to(context, radius - head, 0.15 * unit - head);
    cairo_line_to(context, radius, 0.15 * unit);
    cairo_line_to(context, radius + head, 0.15 * unit - head);
    cairo_stroke(context);
    cairo_restore(context);
}

/// An arrow into a tray.
void paintSave(const Brush& brush, const Rect& area, double unit) {
    const double x = area.centerX();
    const double y = area.centerY();
    const double reach = 0.75 * unit;
    cairo_t* context = brush.context();
    brush.use(theme::text);
    cairo_set_line_width(context, 0.22 * unit);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
    cairo_move_to(context, x, y - reach);
    cairo_line_to(context, x, y + 0.2 * unit);
    cairo_move_to(context, x - 0.42 * unit, y - 0.22 * unit);
    cairo_line_to(context, x, y + 0.2 * unit);
    cairo_line_to(context, x + 0.42 * unit, y - 0.22 * unit);
    cairo_move_to(context, x - reach, y + 0.15 * unit);
    cairo_line_to(context, x - reach, y + reach);
    cairo_line_to(context, x + reach, y + reach);
    cairo_line_to(context, x + reach, y + 0.15 * unit);
    cairo_stroke(context);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_BUTT);
    cairo_set_line_join(context, CAIRO_LINE_JOIN_MITER);
}

void paintWordmark(const Brush& brush, const Scene& scene) {
    const Rect& area = scene.layout.wordmark;
    const double unit = scene.layout.unit;
    const double radius = 0.95 * unit;
    const double x = area.x + radius + 0.25 * unit;
    const double y = area.centerY();
    cairo_t* context = brush.context();
    // A knob, half turned: the mark of the effect.
    cairo_set_line_width(context, 0.42 * unit);
    brush.use(theme::track);
    cairo_new_sub_path(context);
    cairo_arc(context, x, y, radius, 0.0, 2.0 * std::numbers::pi);
    cairo_stroke(context);
    brush.use(accentOf(scene));
    cairo_new_sub_path(context);
    cairo_arc(context, x, y, radius, 0.75 * std::numbers::pi, 1.75 * std::numbers::pi);
    cairo_stroke(context);
    const double start = x + radius + 0.9 * unit;
    if (start < area.right()) {
        brush.text({start, area.y, area.right() - start, area.height}, "Orvalo",
                   {.size = 2.1 * unit, .colour = theme::text, .bold = true});
    }
}

/// The name, and the mark of a list.
void paintPresetName(const Brush& brush, const Scene& scene) {
    const Layout& layout = scene.layout;
    const Rect inner = layout.presetName.inset(layout.unit, 0.0);
    const double arrow = 1.5 * layout.unit;
    brush.text({inner.x, inner.y, std::max(0.0, inner.width - arrow), inner.height},
               scene.presets.label(), {.size = layout.text, .colour = theme::text});
    const double x = inner.right() - 0.5 * layout.unit;
    const double reach = 0.38 * layout.unit;
    brush.use(theme::dimText);
    cairo_move_to(brush.context(), x - reach, inner.centerY() - 0.5 * reach);
    cairo_line_to(brush.context(), x + reach, inner.centerY() - 0.5 * reach);
    cairo_line_to(brush.context(), x, inner.centerY() + 0.6 * reach);
    cairo_close_path(brush.context());
    cairo_fill(brush.context());
}

/// Both letters, the one that is heard on a light ground.
void paintSound(const Brush& brush, const Scene& scene) {
    const Layout& layout = scene.layout;
    const Rect area = layout.sound.inset(0.35 * layout.unit, 0.35 * layout.unit);
    const double half = 0.5 * area.width;
    const bool isB = scene.comparison.isB;
    brush.fillRound({area.x + (isB ? half : 0.0), area.y, half, area.height},
                    0.7 * cornerRadius(layout), isEnabled(scene) ? theme::accent : theme::dimText);
    const auto paintLetter = [&](const char* letter, double x, bool heard) {
        brush.text({x, area.y, half, area.height}, letter,
                   {.size = layout.text,
                    .colour = heard ? theme::ground : dimTextOf(layout),
                    .align = Align::centre,
                    .bold = heard});
    };
    paintLetter("A", area.x, !isB);
    paintLetter("B", area.x + half, isB);
}

void paintFieldContents(const Brush& brush, const Scene& scene, Kind kind) {
    const Layout& layout = scene.layout;
    const double unit = layout.unit;
    switch (kind) {
        case Kind::undo:
            return paintTurn(brush, layout.undo, -1.0, unit,
                             scene.edits.canUndo() ? theme::text : theme::inactive);
        case Kind::redo:
            return paintTurn(brush, layout.redo, 1.0, unit,
                             scene.edits.canRedo() ? theme::text : theme::inactive);
        case Kind::previousPreset:
            return paintChevron(brush, layout.previousPreset, -1.0, unit);
        case Kind::presetName:
            return paintPresetName(brush, scene);
        case Kind::nextPreset:
            return paintChevron(brush, layout.nextPreset, 1.0, unit);
        case Kind::savePreset:
            return paintSave(brush, layout.savePreset, unit);
        case Kind::sound:
            return paintSound(brush, scene);
        case Kind::copySound:
            return brush.text(layout.copySound, scene.comparison.isB ? "B\u2192A" : "A\u2192B",
                              {.size = layout.text, .colour = theme::text, .align = Align::centre});
        default:
            break;
    }
}

}  // namespace

void paintHeader(const Brush& brush, const Scene& scene) {
    brush.fill(scene.layout.header, theme::ground);
    paintWordmark(brush, scene);
    for (const auto& field : headerFields) {
        paintButton(brush, scene, scene.layout.*field.area, isHovered(scene, field.kind),
                    isFocused(scene, field.focus));
        paintFieldContents(brush, scene, field.kind);
    }
    paintSwitch(brush, scene);
}

void paintSwitch(const Brush& brush, const Scene& scene) {
    const Layout& layout = scene.layout;
    const Rect& area = layout.cell(Parameter::enabled).area;
    const bool on = isEnabled(scene);
    brush.fill(area, theme::ground);
    const bool hovered =
        scene.hovered.kind == Kind::control && scene.hovered.parameter == Parameter::enabled;
    paintButton(brush, scene, area, hovered, isFocused(scene, Focus::firstControl));

    const double radius = 0.62 * layout.unit;
    const double x = area.x + 2.0 * layout.unit;
    const double y = area.centerY() + 0.1 * layout.unit;
    cairo_t* context = brush.context();
    brush.use(on ? theme::accent : theme::dimText);
    cairo_set_line_width(context, 0.24 * layout.unit);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
    cairo_new_sub_path(context);
    cairo_arc(context, x, y, radius, -0.3 * std::numbers::pi, 1.3 * std::numbers::pi);
    cairo_stroke(context);
    cairo_move_to(context, x, y - 1.25 * radius);
    cairo_line_to(context, x, y - 0.15 * radius);
    cairo_stroke(context);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_BUTT);
    const double start = x + radius + layout.unit;
    brush.text(
        {start, area.y, std::max(0.0, area.right() - start - 0.5 * layout.unit), area.height},
        on ? "On" : "Off", {.size = layout.text, .colour = on ? theme::text : dimTextOf(layout)});
}

}  // namespace orvalo::effect::ui
