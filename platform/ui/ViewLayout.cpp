#include "platform/ui/ViewLayout.h"

#include <algorithm>
#include <cmath>

namespace orvalo {

namespace {

void* parentClass = nullptr;

GQuark frameKey() {
    static const GQuark key = g_quark_from_static_string("orvalo-frame");
    return key;
}

/// The length clamped to the toolkit's range; 0 for NaN.
double allocatable(double length) {
    constexpr double most = 32767;  // The largest size in X11.
    return std::isnan(length) ? 0 : std::clamp(length, -most, most);
}

void allocateFrame(GtkWidget* child, const CGRect& frame) {
    // GTK requires at least the minimum size.
    GtkRequisition least;
    gtk_widget_get_preferred_size(child, &least, nullptr);
    const graphene_point_t at{static_cast<float>(allocatable(frame.origin.x)),
                              static_cast<float>(allocatable(frame.origin.y))};
    gtk_widget_allocate(child,
                        std::max(least.width, static_cast<int>(allocatable(frame.size.width))),
                        std::max(least.height, static_cast<int>(allocatable(frame.size.height))),
                        -1, gsk_transform_translate(nullptr, &at));
}

GQuark ratioKey() {
    static const GQuark key = g_quark_from_static_string("orvalo-aspect-ratio");
    return key;
}

/// Places the child as large as possible in the centre of the rectangle from the constraints.
void allocateAspect(GtkWidget* child, double ratio) {
    graphene_rect_t given;
    if (gtk_widget_compute_bounds(child, gtk_widget_get_parent(child), &given) == FALSE) {
        return;
    }
    const double width = given.size.width;
    const double height = given.size.height;
    const double fitted = std::min(width, height * ratio);
    const auto place = [](double start, double room, double taken) {
        return start + std::floor((room - taken) / 2);
    };
    allocateFrame(
        child, {place(given.origin.x, width, fitted), place(given.origin.y, height, fitted / ratio),
                std::round(fitted), std::round(fitted / ratio)});
}

void allocateLayout(GtkLayoutManager* manager, GtkWidget* widget, int width, int height,
                    int baseline) {
    GTK_LAYOUT_MANAGER_CLASS(parentClass)->allocate(manager, widget, width, height, baseline);
    for (auto* child = gtk_widget_get_first_child(widget); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        if (gtk_widget_should_layout(child) == FALSE) {
            continue;
        }
        auto* object = G_OBJECT(child);
        if (const auto* frame =
                static_cast<const CGRect*>(g_object_get_qdata(object, frameKey()))) {
            allocateFrame(child, *frame);
        } else if (const auto* ratio =
                       static_cast<const double*>(g_object_get_qdata(object, ratioKey()))) {
            allocateAspect(child, *ratio);
        }
    }
}

/// A view accepts any size. The base class's result, computed for the solver, would be the last
/// size where a constraint requests as much as possible.
void measureLayout(GtkLayoutManager* manager, GtkWidget* widget, GtkOrientation orientation,
                   int forSize, int* minimum, int* natural, int* minimumBaseline,
                   int* naturalBaseline) {
    GTK_LAYOUT_MANAGER_CLASS(parentClass)
        ->measure(manager, widget, orientation, forSize, minimum, natural, minimumBaseline,
                  naturalBaseline);
    *minimum = 0;
    *natural = 0;
}

void initLayoutClass(void* type, void* /*data*/) {
    parentClass = g_type_class_peek_parent(type);
    GTK_LAYOUT_MANAGER_CLASS(type)->allocate = allocateLayout;
    GTK_LAYOUT_MANAGER_CLASS(type)->measure = measureLayout;
}

}  // namespace

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

void setAspectRatio(GtkWidget* widget, double ratio) {
    g_object_set_qdata_full(G_OBJECT(widget), ratioKey(), ratio > 0 ? new double(ratio) : nullptr,
                            [](void* held) { delete static_cast<double*>(held); });
    gtk_widget_queue_resize(widget);
}

}  // namespace orvalo
