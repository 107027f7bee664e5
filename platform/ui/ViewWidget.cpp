#include "platform/ui/ViewWidget.h"

#include "platform/ui/ViewLayout.h"

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

constexpr guint kAspectRatio = 1;

void setProperty(GObject* object, guint /*property*/, const GValue* value, GParamSpec* /*spec*/) {
    setAspectRatio(GTK_WIDGET(object), g_value_get_double(value));
}

void initClass(void* type, void* /*data*/) {
    parentClass = g_type_class_peek_parent(type);
    G_OBJECT_CLASS(type)->dispose = dispose;
    G_OBJECT_CLASS(type)->set_property = setProperty;
    g_object_class_install_property(
        G_OBJECT_CLASS(type), kAspectRatio,
        g_param_spec_double("aspect-ratio", nullptr, nullptr, 0, G_MAXDOUBLE, 0,
                            static_cast<GParamFlags>(G_PARAM_WRITABLE | G_PARAM_STATIC_STRINGS)));
    gtk_widget_class_set_layout_manager_type(GTK_WIDGET_CLASS(type), viewLayoutType());
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
