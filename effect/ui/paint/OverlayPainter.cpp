#include <cmath>

#include "effect/ui/paint/Painters.h"

namespace orvalo::effect::ui {

namespace {

TextStyle complaintStyle(const Scene& scene) {
    return {.size = scene.layout.text, .colour = theme::text, .align = Align::centre};
}

void paintField(const Brush& brush, const Scene& scene) {
    const Layout& layout = scene.layout;
    const ValueEntry& value = *scene.entry;
    const Rect field = layout.entryField(value.parameter);
    const double line = hairline(layout);
    const bool wrong = !value.complaint.empty();
    brush.fillRound(field, 0.5 * cornerRadius(layout), theme::ground);
    brush.strokeRound(field, 0.5 * cornerRadius(layout), 1.5 * line,
                      wrong ? theme::signal : theme::accent);
    const TextStyle style{.size = layout.text, .colour = theme::text};
    const std::string& text = value.entry.text();
    const double wide = brush.textWidth(text, style);
    const double before = brush.textWidth(text.substr(0, value.entry.caret()), style);
    const Rect inner = field.inset(0.5 * layout.unit, 0.0);
    // Centred if it fits; else moved so that the caret is visible.
    double x = inner.centerX() - 0.5 * wide;
    if (wide > inner.width) {
        x = before > inner.width ? inner.right() - before : inner.x;
    }
    cairo_save(brush.context());
    cairo_rectangle(brush.context(), inner.x - line, inner.y, inner.width + 2.0 * line,
                    inner.height);
    cairo_clip(brush.context());
    const double high = 1.2 * layout.text;
    const double top = field.centerY() - 0.5 * high;
    if (value.entry.isAllSelected()) {
        brush.fill({x, top, wide, high}, theme::accent.withAlpha(0.35));
    }
    brush.text({x, field.y, wide + 1.0, field.height}, text, style);
    if (!value.entry.isAllSelected()) {
        brush.fill({std::round(x + before), top, line, high}, theme::text);
    }
    cairo_restore(brush.context());
}

}  // namespace

Rect complaintArea(const Brush& brush, const Scene& scene) {
    if (!scene.entry || scene.entry->complaint.empty()) {
        return {};
    }
    const double wide = brush.textWidth(scene.entry->complaint, complaintStyle(scene));
    return scene.layout.complaint(scene.entry->parameter, wide);
}

void paintEntry(const Brush& brush, const Scene& scene) {
    paintField(brush, scene);
    const Rect area = complaintArea(brush, scene);
    if (area.isEmpty()) {
        return;
    }
    const Layout& layout = scene.layout;
    brush.fillRound(area, 0.5 * cornerRadius(layout), theme::ground);
    brush.strokeRound(area, 0.5 * cornerRadius(layout), hairline(layout), theme::signal);
    brush.text(area.inset(0.5 * layout.unit, 0.0), scene.entry->complaint, complaintStyle(scene));
}

void paintPresetList(const Brush& brush, const Scene& scene) {
    const Layout& layout = scene.layout;
    const auto& presets = scene.presets.presets();
    const Rect area = layout.presetList(presets.size());
    brush.fillRound(area, cornerRadius(layout), theme::raised);
    brush.strokeRound(area, cornerRadius(layout), hairline(layout), theme::raisedLight);
    for (std::size_t i = 0; i < presets.size(); ++i) {
        const Rect entry = layout.presetEntry(i, presets.size());
        const bool isMarked = scene.list == i;
        if (isMarked) {
            brush.fillRound(entry, 0.5 * cornerRadius(layout), theme::accent);
        }
        Colour colour = theme::text;
        if (isMarked) {
            colour = theme::ground;
        } else if (scene.presets.chosen() == i) {
            colour = theme::accent;
        }
        brush.text(entry.inset(layout.unit, 0.0), presets[i].name,
                   {.size = layout.text, .colour = colour});
    }
}

}  // namespace orvalo::effect::ui
