#include "platform/ui/ViewWidget.h"

#include <algorithm>
#include <cmath>

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
    gtk_widget_class_set_layout_manager_type(GTK_WIDGET_CLASS(type), viewLayoutType());
    gtk_widget_class_set_css_name(GTK_WIDGET_CLASS(type), "view");
}

void init(GTypeInstance* instance, void* /*type*/) {
    gtk_widget_set_overflow(reinterpret_cast<GtkWidget*>(instance), GTK_OVERFLOW_HIDDEN);
}

void* layoutParentClass = nullptr;

GQuark frameKey() {
    static const GQuark key = g_quark_from_static_string("orvalo-frame");
    return key;
}

/// What the toolkit can lay out of a length; nothing of one that is not a number.
double allocatable(double length) {
    constexpr double most = 32767;  // Windows and their parts are no larger on X11.
    return std::isnan(length) ? 0 : std::clamp(length, -most, most);
}

void allocateFrame(GtkWidget* child, const CGRect& frame) {
    // A control does not become smaller than it can be.
    GtkRequisition least;
    gtk_widget_get_preferred_size(child, &least, nullptr);
    const auto at = GRAPHENE_POINT_INIT(static_cast<float>(allocatable(frame.origin.x)),
                                        static_cast<float>(allocatable(frame.origin.y)));
    gtk_widget_allocate(child,
                        std::max(least.width, static_cast<int>(allocatable(frame.size.width))),
                        std::max(least.height, static_cast<int>(allocatable(frame.size.height))),
                        -1, gsk_transform_translate(nullptr, &at));
}

void allocateLayout(GtkLayoutManager* manager, GtkWidget* widget, int width, int height,
                    int baseline) {
    GTK_LAYOUT_MANAGER_CLASS(layoutParentClass)->allocate(manager, widget, width, height, baseline);
    for (auto* child = gtk_widget_get_first_child(widget); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        const auto* frame =
            static_cast<const CGRect*>(g_object_get_qdata(G_OBJECT(child), frameKey()));
        if (frame != nullptr && gtk_widget_should_layout(child) != FALSE) {
            allocateFrame(child, *frame);
        }
    }
}

/// A view has whatever extent it is given; what it holds asks for none. The toolkit's own answer,
/// which it needs for the layout, would be the extent of the last one where a constraint wishes
/// for as much as there is.
void measureLayout(GtkLayoutManager* manager, GtkWidget* widget, GtkOrientation orientation,
                   int forSize, int* minimum, int* natural, int* minimumBaseline,
                   int* naturalBaseline) {
    GTK_LAYOUT_MANAGER_CLASS(layoutParentClass)
        ->measure(manager, widget, orientation, forSize, minimum, natural, minimumBaseline,
                  naturalBaseline);
    *minimum = 0;
    *natural = 0;
}

void initLayoutClass(void* type, void* /*data*/) {
    layoutParentClass = g_type_class_peek_parent(type);
    GTK_LAYOUT_MANAGER_CLASS(type)->allocate = allocateLayout;
    GTK_LAYOUT_MANAGER_CLASS(type)->measure = measureLayout;
}

}  // namespace

GType viewWidgetType() {
    static const GType type =
        g_type_register_static_simple(GTK_TYPE_WIDGET, "UIView", sizeof(ViewWidgetClass), initClass,
                                      sizeof(ViewWidget), init, GTypeFlags{});
    return type;
}

GType viewLayoutType() {
    static const GType type = [] {
        // The toolkit keeps the layout's structures to itself; their extent is known at run time.
        GTypeQuery base;
        g_type_query(GTK_TYPE_CONSTRAINT_LAYOUT, &base);
        return g_type_register_static_simple(GTK_TYPE_CONSTRAINT_LAYOUT, "UIViewLayout",
                                             base.class_size, initLayoutClass, base.instance_size,
                                             nullptr, GTypeFlags{});
    }();
    return type;
}

void holdFrame(GtkWidget* widget, const CGRect* frame) {
    g_object_set_qdata(G_OBJECT(widget), frameKey(), const_cast<CGRect*>(frame));
    gtk_widget_queue_resize(widget);
}

}  // namespace orvalo
