#pragma once

#include <gtk/gtk.h>
#include <gtkmm/widget.h>

#include <string>

namespace orvalo {

/// What assistive technology calls the widget.
inline void setAccessibleName(Gtk::Widget& widget, const std::string& name) {
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   name.c_str(), -1);
}

}  // namespace orvalo
