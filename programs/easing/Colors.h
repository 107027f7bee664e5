#pragma once

#include <gdkmm/rgba.h>
#include <gtkmm/widget.h>

namespace orvalo {

/// The colours of the desktop's style at a widget.
struct Colors {
    Gdk::RGBA text;
    Gdk::RGBA accent;  ///< Stands out, and can be read on the background.

    explicit Colors(Gtk::Widget& widget);
};

/// The same colour, so much of it (0 to 1).
Gdk::RGBA faded(Gdk::RGBA color, float share);

/// What the pen draws with from now on.
void setColor(const Cairo::RefPtr<Cairo::Context>& pen, const Gdk::RGBA& color);

}  // namespace orvalo
