#include "programs/easing/Colors.h"

#include <gtkmm/stylecontext.h>

namespace orvalo {

Colors::Colors(Gtk::Widget& widget) {
    const auto style = widget.get_style_context();
    text = style->get_color();
    if (!style->lookup_color("accent_color", accent)) {
        accent = text;
    }
}

Gdk::RGBA faded(Gdk::RGBA color, float share) {
    color.set_alpha(color.get_alpha() * share);
    return color;
}

void setColor(const Cairo::RefPtr<Cairo::Context>& pen, const Gdk::RGBA& color) {
    pen->set_source_rgba(
        static_cast<double>(color.get_red()), static_cast<double>(color.get_green()),
        static_cast<double>(color.get_blue()), static_cast<double>(color.get_alpha()));
}

}  // namespace orvalo
