#pragma once

#include <gdkmm/rgba.h>
#include <gtkmm/widget.h>

namespace orvalo {

/// The colours of the desktop's style at a widget.
struct Colors {
    Gdk::RGBA text;
    Gdk::RGBA accent;  ///< Stands out from the background and is readable on it.

    explicit Colors(Gtk::Widget& widget);
};

/// The colour with its opacity multiplied by share, 0 to 1.
Gdk::RGBA faded(Gdk::RGBA color, float share);

/// Sets the pen's colour.
void setColor(const Cairo::RefPtr<Cairo::Context>& pen, const Gdk::RGBA& color);

}  // namespace orvalo
