#include "effect/ui/paint/Brush.h"

#include <cmath>
#include <numbers>

#include "effect/ui/paint/CairoPointers.h"

namespace orvalo::effect::ui {

void Brush::use(const Colour& colour) const {
    cairo_set_source_rgba(context_, colour.red, colour.green, colour.blue, colour.alpha);
}

void Brush::fill(const Rect& rect, const Colour& colour) const {
    use(colour);
    cairo_rectangle(context_, rect.x, rect.y, rect.width, rect.height);
    cairo_fill(context_);
}

void Brush::roundPath(const Rect& rect, double radius) const {
    const double r = std::min(radius, 0.5 * std::min(rect.width, rect.height));
    constexpr double quarter = 0.5 * std::numbers::pi;
    cairo_new_sub_path(context_);
    cairo_arc(context_, rect.right() - r, rect.y + r, r, -quarter, 0.0);
    cairo_arc(context_, rect.right() - r, rect.bottom() - r, r, 0.0, quarter);
    cairo_arc(context_, rect.x + r, rect.bottom() - r, r, quarter, 2.0 * quarter);
    cairo_arc(context_, rect.x + r, rect.y + r, r, 2.0 * quarter, 3.0 * quarter);
    cairo_close_path(context_);
}

void Brush::fillRound(const Rect& rect, double radius, const Colour& colour) const {
    use(colour);
    roundPath(rect, radius);
    cairo_fill(context_);
}

void Brush::strokeRound(const Rect& rect, double radius, double width, const Colour& colour) const {
    use(colour);
    cairo_set_line_width(context_, width);
    roundPath(rect.inset(0.5 * width, 0.5 * width), radius);
    cairo_stroke(context_);
}

void Brush::line(double x1, double y1, double x2, double y2, double width,
                 const Colour& colour) const {
    use(colour);
    cairo_set_line_width(context_, width);
    cairo_move_to(context_, x1, y1);
    cairo_line_to(context_, x2, y2);
    cairo_stroke(context_);
}

void Brush::disc(double x, double y, double radius, const Colour& colour) const {
    use(colour);
    cairo_new_sub_path(context_);
    cairo_arc(context_, x, y, radius, 0.0, 2.0 * std::numbers::pi);
    cairo_fill(context_);
}

void Brush::setFont(const TextStyle& style) const {
    // fontconfig resolves this name on every machine.
    cairo_select_font_face(context_, "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                           style.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    // TextStyle::size is the height from ascenders to descenders.
    constexpr double em = 0.92;
    cairo_set_font_size(context_, em * style.size);
}

double Brush::measured(const std::string& text) const {
    cairo_text_extents_t extents;
    cairo_text_extents(context_, text.c_str(), &extents);
    return extents.x_advance;
}

double Brush::textWidth(const std::string& text, const TextStyle& style) const {
    setFont(style);
    return measured(text);
}

std::string Brush::shortened(const std::string& text, double width) const {
    if (measured(text) <= width) {
        return text;
    }
    std::string kept = text;
    while (!kept.empty()) {
        // Remove whole UTF-8 characters, with their continuation bytes.
        while (!kept.empty() && (static_cast<unsigned char>(kept.back()) & 0xC0U) == 0x80U) {
            kept.pop_back();
        }
        if (!kept.empty()) {
            kept.pop_back();
        }
        std::string tried = kept + "\u2026";
        if (measured(tried) <= width) {
            return tried;
        }
    }
    return {};
}

void Brush::text(const Rect& area, const std::string& text, const TextStyle& style) const {
    setFont(style);
    const std::string shown = shortened(text, area.width);
    if (shown.empty()) {
        return;
    }
    const double wide = measured(shown);
    double x = area.x;
    if (style.align == Align::centre) {
        x = area.centerX() - 0.5 * wide;
    } else if (style.align == Align::right) {
        x = area.right() - wide;
    }
    cairo_font_extents_t font;
    cairo_font_extents(context_, &font);
    const double baseline = area.centerY() + 0.5 * (font.ascent - font.descent);
    use(style.colour);
    cairo_move_to(context_, std::round(x), std::round(baseline));
    cairo_show_text(context_, shown.c_str());
    cairo_new_path(context_);
}

void Brush::fittingText(const Rect& area, std::initializer_list<const char*> texts,
                        const TextStyle& style) const {
    setFont(style);
    const char* chosen = "";
    for (const char* one : texts) {
        chosen = one;
        if (measured(one) <= area.width) {
            break;
        }
    }
    text(area, chosen, style);
}

void openFonts() {
    const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1));
    const Context context(cairo_create(surface.get()));
    const Brush brush(context.get());
    for (const bool isBold : {false, true}) {
        brush.textWidth("0", {.size = 12, .colour = {}, .bold = isBold});
    }
}

}  // namespace orvalo::effect::ui
