#include "tests/platform/plugin-ui/view/WidgetPlace.h"

#include <gdk/x11/gdkx.h>
#include <gtk/gtk.h>

#include "tests/platform/plugin-ui/x11/Screen.h"

namespace orvalo::testing {

X11Rect placeOf(GtkWidget* widget) {
    auto* native = gtk_widget_get_native(widget);
    double x = 0;
    double y = 0;
    gtk_native_get_surface_transform(native, &x, &y);
    graphene_rect_t bounds;
    if (gtk_widget_compute_bounds(widget, GTK_WIDGET(native), &bounds) == FALSE) {
        return {};
    }
    const auto toplevel = rectangleOf(gdk_x11_surface_get_xid(gtk_native_get_surface(native)));
    return {toplevel.x + static_cast<int>(x + double{bounds.origin.x}),
            toplevel.y + static_cast<int>(y + double{bounds.origin.y}),
            static_cast<int>(bounds.size.width), static_cast<int>(bounds.size.height)};
}

}  // namespace orvalo::testing
