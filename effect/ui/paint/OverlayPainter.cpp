#include <cmath>
#include <numbers>

#include "effect/ui/paint/Painters.h"

namespace orvalo::effect::ui {

namespace {

TextStyle lineStyle(const Scene& scene) {
    return {.size = scene.layout.text, .colour = theme::text, .align = Align::centre};
}

void paintField(const Brush& brush, const Scene& scene) {
    const Layout& layout = scene.layout;
    const ValueEntry& value = *scene.entry;
    const Rect field = scene.entryField();
    const double line = hairline(layout);
    const bool wrong = !value.complaint.empty();
    brush.fill(field, theme::ground);
    brush.strokeRound(field, 0.5 * cornerRadius(layout), 1.5 * line,
                      wrong ? theme::signal : theme::accent);
    const TextStyle style{.size = layout.text, .colour = theme::text};
    const std::string& text = value.entry.text();
    const double wide = brush.textWidth(text, style);
    const double before = brush.textWidth(text.substr(0, value.entry.caret()), style);
    const Rect inner = field.inset(0.5 * layout.unit, 0.0);
    // A value is centred if it fits; else moved so that the caret is visible.
    double x = scene.isNaming() ? inner.x : inner.centerX() - 0.5 * wide;
    if (wide > inner.width) {
        x = before > inner.width ? inner.right() - before : inner.x;
    }
    const Clip clip(brush.context(), inner.inset(-line, 0.0));
    const double high = 1.2 * layout.text;
    const double top = field.centerY() - 0.5 * high;
    if (value.entry.isAllSelected()) {
        brush.fill({x, top, wide, high}, theme::accent.withAlpha(0.35));
    }
    brush.text({x, field.y, wide + 1.0, field.height}, text, style);
    if (!value.entry.isAllSelected()) {
        brush.fill({std::round(x + before), top, line, high}, theme::text);
    }
}

/// A line in its own box.
void paintLine(const Brush& brush, const Scene& scene, const Rect& area, const std::string& text,
               const Colour& colour) {
    const Layout& layout = scene.layout;
    brush.fill(area, theme::ground);
    brush.strokeRound(area, 0.5 * cornerRadius(layout), hairline(layout), colour);
    brush.text(area.inset(0.5 * layout.unit, 0.0), text, lineStyle(scene));
}

/// Draws the text in two lines, broken between words; the second one is shortened.
void paintTwoLines(const Brush& brush, const Rect& area, const std::string& text,
                   const TextStyle& style) {
    std::size_t end = text.size();
    while (end != std::string::npos && end > 0 &&
           brush.textWidth(text.substr(0, end), style) > area.width) {
        end = text.rfind(' ', end - 1);
    }
    if (end == std::string::npos || end == 0) {
        end = text.size();
    }
    const double high = 0.5 * area.height;
    brush.text({area.x, area.y, area.width, high}, text.substr(0, end), style);
    if (end < text.size()) {
        brush.text({area.x, area.y + high, area.width, high}, text.substr(end + 1), style);
    }
}

/// A pencil.
void paintRename(const Brush& brush, const Rect& area) {
    const double reach = 0.2 * area.height;
    cairo_t* context = brush.context();
    cairo_save(context);
    cairo_translate(context, area.centerX(), area.centerY());
    cairo_rotate(context, 0.25 * std::numbers::pi);
    cairo_move_to(context, -0.4 * reach, -1.3 * reach);
    cairo_line_to(context, 0.4 * reach, -1.3 * reach);
    cairo_line_to(context, 0.4 * reach, 0.8 * reach);
    cairo_line_to(context, 0.0, 1.5 * reach);
    cairo_line_to(context, -0.4 * reach, 0.8 * reach);
    cairo_close_path(context);
    cairo_stroke(context);
    cairo_restore(context);
}

void paintDelete(const Brush& brush, const Rect& area) {
    const double reach = 0.18 * area.height;
    cairo_t* context = brush.context();
    cairo_move_to(context, area.centerX() - reach, area.centerY() - reach);
    cairo_line_to(context, area.centerX() + reach, area.centerY() + reach);
    cairo_move_to(context, area.centerX() + reach, area.centerY() - reach);
    cairo_line_to(context, area.centerX() - reach, area.centerY() + reach);
    cairo_stroke(context);
}

void paintPresetEntry(const Brush& brush, const Scene& scene, std::size_t index) {
    const Layout& layout = scene.layout;
    const auto& presets = scene.presets.presets();
    const std::size_t count = presets.size();
    const Rect entry = layout.presetEntry(index, count);
    if (entry.isEmpty()) {
        return;
    }
    const bool isUser = presets[index].isUser;
    const bool isMarked = scene.list == index;
    Colour colour = theme::text;
    if (isMarked) {
        brush.fillRound(entry, 0.5 * cornerRadius(layout), theme::accent);
        colour = theme::ground;
    } else if (scene.presets.chosen() == index) {
        colour = theme::accent;
    }
    if (isUser && !presets[index - 1].isUser && !isMarked) {
        brush.line(entry.x, entry.y, entry.right(), entry.y, hairline(layout), theme::track);
    }
    Rect name = entry.inset(layout.unit, 0.0);
    if (isUser) {
        const Rect rename = layout.renameEntry(index, count);
        name.width = std::max(0.0, rename.x - name.x);
        cairo_set_line_width(brush.context(), 1.2 * hairline(layout));
        const auto useFor = [&](Target::Kind kind) {
            const bool isHovered = scene.hovered == Target{.kind = kind, .entry = index};
            brush.use(isMarked && !isHovered ? theme::ground.withAlpha(0.7)
                                             : (isMarked ? theme::text : dimTextOf(layout)));
        };
        useFor(Target::Kind::renameEntry);
        paintRename(brush, rename);
        useFor(Target::Kind::deleteEntry);
        paintDelete(brush, layout.deleteEntry(index, count));
    }
    brush.text(name, presets[index].name, {.size = layout.text, .colour = colour});
}

/// A button at the side of the list with an arrow, where there are more presets.
void paintScroll(const Brush& brush, const Scene& scene, int direction) {
    const Layout& layout = scene.layout;
    const Rect area = layout.presetScroll(direction, scene.presets.presets().size());
    if (area.isEmpty()) {
        return;
    }
    const bool isHovered = scene.hovered.kind == Target::Kind::presetScroll &&
                           scene.hovered.entry == (direction < 0 ? 0 : 1);
    brush.fillRound(area.inset(0.2 * layout.unit, 0.0), 0.5 * cornerRadius(layout),
                    isHovered ? theme::track : theme::raisedLight);
    const double reach = 0.5 * layout.unit;
    const double tip = area.centerX() + 0.5 * direction * reach;
    cairo_t* context = brush.context();
    brush.use(theme::text);
    cairo_set_line_width(context, 0.22 * layout.unit);
    cairo_move_to(context, tip - direction * reach, area.centerY() - reach);
    cairo_line_to(context, tip, area.centerY());
    cairo_line_to(context, tip - direction * reach, area.centerY() + reach);
    cairo_stroke(context);
}

}  // namespace

Rect entryLineArea(const Brush& brush, const Scene& scene) {
    const auto line = scene.entryLine();
    return line.empty() ? Rect{}
                        : scene.layout.complaint(scene.entryField(),
                                                 brush.textWidth(line, lineStyle(scene)));
}

Rect noticeArea(const Brush& brush, const Scene& scene) {
    // The open list shows it instead.
    return scene.notice.empty() || scene.list
               ? Rect{}
               : scene.layout.complaint(scene.layout.presetName,
                                        brush.textWidth(scene.notice, lineStyle(scene)));
}

void paintNotice(const Brush& brush, const Scene& scene) {
    if (const Rect area = noticeArea(brush, scene); !area.isEmpty()) {
        paintLine(brush, scene, area, scene.notice, theme::accent);
    }
}

void paintEntry(const Brush& brush, const Scene& scene) {
    paintField(brush, scene);
    if (const Rect area = entryLineArea(brush, scene); !area.isEmpty()) {
        paintLine(brush, scene, area, scene.entryLine(),
                  scene.entry->complaint.empty() ? theme::accent : theme::signal);
    }
}

void paintPresetList(const Brush& brush, const Scene& scene) {
    const Layout& layout = scene.layout;
    const auto& presets = scene.presets.presets();
    const Rect area = layout.presetList(presets.size());
    // Its corners must not depend on what was drawn there before.
    brush.fill(area, theme::ground);
    brush.fillRound(area, cornerRadius(layout), theme::raised);
    brush.strokeRound(area, cornerRadius(layout), hairline(layout), theme::raisedLight);
    for (std::size_t i = 0; i < presets.size(); ++i) {
        paintPresetEntry(brush, scene, i);
    }
    for (const int direction : {-1, 1}) {
        paintScroll(brush, scene, direction);
    }
    const Preset& marked = presets.at(*scene.list);
    const Rect place = layout.presetDescription(presets.size());
    brush.line(place.x, place.y, place.right(), place.y, hairline(layout), theme::track);
    std::string text = marked.description;
    if (!scene.notice.empty()) {
        text = scene.notice;
    } else if (text.empty() && marked.isUser) {
        text = "Saved by you. F2 renames it, Delete deletes it.";
    }
    paintTwoLines(
        brush, place.inset(0.0, 0.25 * layout.unit), text,
        {.size = layout.text, .colour = scene.notice.empty() ? dimTextOf(layout) : theme::text});
}

}  // namespace orvalo::effect::ui
