#include "platform/ui/ViewWidget.h"

namespace orvalo {

namespace {

struct ViewWidget {
    GtkWidget parent;
};

struct ViewWidgetClass {
    GtkWidgetClass parent;
};

void* parentClass = nullptr;

void dispose(GObject* object) {
    while (auto* child = gtk_widget_get_first_child(GTK_WIDGET(object))) {
        gtk_widget_unparent(child);
    }
    G_OBJECT_CLASS(parentClass)->dispose(object);
}

void initClass(void* type, void* /*data*/) {
    parentClass = g_type_class_peek_parent(type);
    G_OBJECT_CLASS(type)->dispose = dispose;
    gtk_widget_class_set_layout_manager_type(GTK_WIDGET_CLASS(type), GTK_TYPE_CONSTRAINT_LAYOUT);
    gtk_widget_class_set_css_name(GTK_WIDGET_CLASS(type), "view");
}

void init(GTypeInstance* instance, void* /*type*/) {
    gtk_widget_set_overflow(reinterpret_cast<GtkWidget*>(instance), GTK_OVERFLOW_HIDDEN);
}

}  // namespace

GType viewWidgetType() {
    static const GType type =
        g_type_register_static_simple(GTK_TYPE_WIDGET, "UIView", sizeof(ViewWidgetClass), initClass,
                                      sizeof(ViewWidget), init, GTypeFlags{});
    return type;
}

}  // namespace orvalo
