#include "platform/ui/ScreenBin.h"

#include <utility>

namespace orvalo {

namespace {

struct ScreenBin {
    GtkWidget parent;
    std::function<void()>* laidOut;
};

struct ScreenBinClass {
    GtkWidgetClass parent;
};

void* parentClass = nullptr;

ScreenBin* binOf(void* widget) {
    return static_cast<ScreenBin*>(widget);
}

void measure(GtkWidget* widget, GtkOrientation orientation, int forSize, int* minimum, int* natural,
             int* /*minimumBaseline*/, int* /*naturalBaseline*/) {
    gtk_widget_measure(gtk_widget_get_first_child(widget), orientation, forSize, minimum, natural,
                       nullptr, nullptr);
}

void allocate(GtkWidget* widget, int width, int height, int baseline) {
    gtk_widget_allocate(gtk_widget_get_first_child(widget), width, height, baseline, nullptr);
    (*binOf(widget)->laidOut)();
}

void dispose(GObject* object) {
    if (auto* child = gtk_widget_get_first_child(GTK_WIDGET(object))) {
        gtk_widget_unparent(child);
    }
    G_OBJECT_CLASS(parentClass)->dispose(object);
}

void finalize(GObject* object) {
    delete binOf(object)->laidOut;
    G_OBJECT_CLASS(parentClass)->finalize(object);
}

void initClass(void* type, void* /*data*/) {
    parentClass = g_type_class_peek_parent(type);
    G_OBJECT_CLASS(type)->dispose = dispose;
    G_OBJECT_CLASS(type)->finalize = finalize;
    GTK_WIDGET_CLASS(type)->measure = measure;
    GTK_WIDGET_CLASS(type)->size_allocate = allocate;
}

GType binType() {
    static const GType type =
        g_type_register_static_simple(GTK_TYPE_WIDGET, "OrvaloScreenBin", sizeof(ScreenBinClass),
                                      initClass, sizeof(ScreenBin), nullptr, GTypeFlags{});
    return type;
}

}  // namespace

GtkWidget* newScreenBin(GtkWidget* screen, std::function<void()> laidOut) {
    auto* bin = GTK_WIDGET(g_object_new(binType(), nullptr));
    binOf(bin)->laidOut = new std::function<void()>(std::move(laidOut));
    gtk_widget_set_parent(screen, bin);
    return bin;
}

}  // namespace orvalo
