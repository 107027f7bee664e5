#include "platform/plugin-ui/view/X11ContainerView.h"

#include <gdk/x11/gdkx.h>
#include <gtk/gtk.h>

#include <cmath>
#include <utility>

namespace orvalo {

namespace {

/// A widget's rectangle on its surface, in pixels.
X11Rect rectangle(GtkWidget* widget, GtkNative* native) {
    graphene_rect_t bounds;
    if (gtk_widget_compute_bounds(widget, GTK_WIDGET(native), &bounds) == FALSE) {
        return {};
    }
    double x = 0;
    double y = 0;
    gtk_native_get_surface_transform(native, &x, &y);
    const double scale = gtk_widget_get_scale_factor(widget);
    const auto pixels = [scale](double points) {
        return static_cast<int>(std::lround(points * scale));
    };
    const int left = pixels(double{bounds.origin.x} + x);
    const int top = pixels(double{bounds.origin.y} + y);
    return {left, top, pixels(double{bounds.origin.x} + double{bounds.size.width} + x) - left,
            pixels(double{bounds.origin.y} + double{bounds.size.height} + y) - top};
}

/// The part of the widget that its ancestors do not clip; empty on a page that another one is
/// replacing, because a foreign window would cover the transition.
X11Rect visiblePart(GtkWidget* widget, GtkNative* native) {
    auto visible = rectangle(widget, native);
    auto* inside = widget;
    for (auto* around = gtk_widget_get_parent(widget); around != nullptr;
         inside = std::exchange(around, gtk_widget_get_parent(around))) {
        if (GTK_IS_STACK(around) && gtk_stack_get_visible_child(GTK_STACK(around)) != inside) {
            return {};
        }
        const bool isSurface = around == GTK_WIDGET(native);
        if (isSurface || gtk_widget_get_overflow(around) == GTK_OVERFLOW_HIDDEN) {
            visible = intersection(visible, rectangle(around, native));
        }
        if (isSurface) {
            break;
        }
    }
    return visible;
}

constexpr int kSpacing = 12;  // In points.

/// Whether the key is Tab, and then whether it moves backwards.
std::optional<bool> tabOf(unsigned keyval) {
    if (keyval == GDK_KEY_Tab || keyval == GDK_KEY_KP_Tab) {
        return false;
    }
    return keyval == GDK_KEY_ISO_Left_Tab ? std::optional(true) : std::nullopt;
}

template <auto operation>
void forward(void* /*sender*/, void* view) {
    (static_cast<X11ContainerView*>(view)->*operation)();
}

}  // namespace

X11ContainerView::X11ContainerView(int toplevelPriority)
    : UIView(gtk_scrolled_window_new()), toplevelPriority_(toplevelPriority) {
    content_ = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    notice_ = gtk_box_new(GTK_ORIENTATION_VERTICAL, kSpacing);
    gtk_widget_set_hexpand(notice_, TRUE);
    gtk_widget_set_vexpand(notice_, TRUE);
    gtk_widget_set_valign(notice_, GTK_ALIGN_CENTER);
    gtk_widget_set_visible(notice_, FALSE);
    gtk_box_append(GTK_BOX(content_), notice_);
    label_ = gtk_label_new(nullptr);
    gtk_label_set_wrap(GTK_LABEL(label_), TRUE);
    gtk_label_set_justify(GTK_LABEL(label_), GTK_JUSTIFY_CENTER);
    gtk_box_append(GTK_BOX(notice_), label_);
    retry_ = gtk_button_new_with_label("Try Again");
    gtk_widget_add_css_class(retry_, "pill");
    gtk_widget_set_halign(retry_, GTK_ALIGN_CENTER);
    g_signal_connect_swapped(retry_, "clicked", G_CALLBACK(+[](X11ContainerView* view) {
                                 if (const auto retry = view->onRetry) {
                                     retry();
                                 }
                             }),
                             this);
    gtk_box_append(GTK_BOX(notice_), retry_);
    // A box takes no focus itself.
    socket_ = GTK_WIDGET(g_object_new(GTK_TYPE_DRAWING_AREA, "accessible-role",
                                      GTK_ACCESSIBLE_ROLE_GROUP, "focusable", TRUE, nullptr));
    gtk_accessible_update_property(GTK_ACCESSIBLE(socket_), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   "Plug-in UI", -1);
    gtk_widget_set_hexpand(socket_, TRUE);
    gtk_widget_set_vexpand(socket_, TRUE);
    focus_ = gtk_event_controller_focus_new();
    g_signal_connect(focus_, "enter", G_CALLBACK(forward<&X11ContainerView::focused>), this);
    gtk_widget_add_controller(socket_, focus_);
    covered_ = gtk_overlay_new();
    gtk_overlay_set_child(GTK_OVERLAY(covered_), socket_);
    gtk_box_append(GTK_BOX(content_), covered_);
    auto* scroller = GTK_SCROLLED_WINDOW(widget());
    // It has nothing to do for the keyboard; what is inside has.
    gtk_widget_set_focusable(widget(), FALSE);
    gtk_scrolled_window_set_child(scroller, content_);
    // The foreign window would cover overlay scroll bars.
    gtk_scrolled_window_set_overlay_scrolling(scroller, FALSE);
    g_signal_connect(content_, "map", G_CALLBACK(forward<&X11ContainerView::mapped>), this);
    g_signal_connect(content_, "unmap", G_CALLBACK(forward<&X11ContainerView::unmapped>), this);
    g_signal_connect_swapped(content_, "notify::root",
                             G_CALLBACK(+[](X11ContainerView* view) { view->rootChanged(); }),
                             this);
}

X11ContainerView::~X11ContainerView() {
    unmapped();
    g_signal_handlers_disconnect_by_data(content_, this);
    g_signal_handlers_disconnect_by_data(retry_, this);
    g_signal_handlers_disconnect_by_data(focus_, this);
    if (root_ != nullptr) {
        g_signal_handlers_disconnect_by_data(root_, this);
        stopWatchingTab();
    }
}

void X11ContainerView::rootChanged() {
    auto* root = GTK_WIDGET(gtk_widget_get_root(content_));
    if (root == root_) {
        return;
    }
    if (root_ != nullptr) {
        g_signal_handlers_disconnect_by_data(root_, this);
        stopWatchingTab();
        leave();
    }
    root_ = root;
    if (root_ == nullptr) {
        return;
    }
    watchTab();
    g_signal_connect(root_, "unrealize", G_CALLBACK(forward<&X11ContainerView::leave>), this);
    g_signal_connect(root_, "realize",
                     G_CALLBACK(forward<&X11ContainerView::scheduleToplevelReport>), this);
    if (gtk_widget_get_realized(root_) != FALSE) {
        scheduleToplevelReport();
    }
}

void X11ContainerView::watchTab() {
    auto* keys = gtk_event_controller_key_new();
    gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_CAPTURE);
    g_signal_connect(
        keys, "key-pressed",
        G_CALLBACK(+[](GtkEventController* /*keys*/, unsigned keyval, unsigned /*code*/,
                       GdkModifierType /*state*/, X11ContainerView* view) {
            return static_cast<gboolean>(view->handleKey(keyval));
        }),
        this);
    gtk_widget_add_controller(root_, keys);
    keys_.reset(GTK_EVENT_CONTROLLER(g_object_ref(keys)));
}

void X11ContainerView::stopWatchingTab() {
    endTab();
    g_signal_handlers_disconnect_by_data(keys_.get(), this);
    if (auto* watched = gtk_event_controller_get_widget(keys_.get())) {
        gtk_widget_remove_controller(watched, keys_.get());
    }
    keys_ = nullptr;
}

bool X11ContainerView::handleKey(unsigned keyval) {
    endTab();
    tab_ = tabOf(keyval);
    if (!tab_) {
        return false;
    }
    if (gtk_widget_is_focus(socket_) != FALSE) {
        // The foreign window has not got the focus, or the key would not come here.
        tabInto(*tab_);
        return true;
    }
    tabEnd_.reset(g_idle_source_new());
    g_source_set_priority(tabEnd_.get(), G_PRIORITY_HIGH);
    g_source_set_callback(
        tabEnd_.get(),
        [](void* view) -> gboolean {
            static_cast<X11ContainerView*>(view)->endTab();
            return G_SOURCE_REMOVE;
        },
        this, nullptr);
    g_source_attach(tabEnd_.get(), nullptr);
    return false;
}

void X11ContainerView::endTab() {
    tab_.reset();
    tabEnd_ = nullptr;
}

void X11ContainerView::focused() {
    // Not by a click or by the window's appearance.
    if (tab_ && !isTabbingOut_) {
        tabInto(*tab_);
    }
}

void X11ContainerView::tabInto(bool isBackward) {
    if (!onTabInto || !onTabInto(isBackward)) {
        tabOut(isBackward);
    }
}

void X11ContainerView::tabOut(bool isBackward) {
    const bool isOuter = !std::exchange(isTabbingOut_, true);
    gtk_widget_grab_focus(socket_);
    if (isOuter) {
        g_signal_emit_by_name(socket_, "move-focus",
                              isBackward ? GTK_DIR_TAB_BACKWARD : GTK_DIR_TAB_FORWARD);
        isTabbingOut_ = false;
    }
}

void X11ContainerView::scheduleToplevelReport() {
    toplevelReport_.reset(g_idle_source_new());
    g_source_set_priority(toplevelReport_.get(), toplevelPriority_);
    g_source_set_callback(
        toplevelReport_.get(),
        [](void* view) -> gboolean {
            static_cast<X11ContainerView*>(view)->reportToplevel();
            return G_SOURCE_REMOVE;
        },
        this, nullptr);
    g_source_attach(toplevelReport_.get(), nullptr);
}

void X11ContainerView::reportToplevel() {
    auto* surface = gtk_native_get_surface(GTK_NATIVE(root_));
    if (place_.toplevel == 0 && onToplevel && GDK_IS_X11_SURFACE(surface)) {
        gdk_display_sync(gdk_surface_get_display(surface));
        onToplevel(
            {gdk_x11_surface_get_xid(surface), gtk_widget_get_scale_factor(content_), {}, {}});
    }
}

void X11ContainerView::leave() {
    toplevelReport_ = nullptr;
    if (const auto leaving = onLeaving) {
        leaving();
    }
}

void X11ContainerView::setMinimumSize(int width, int height) {
    gtk_widget_set_size_request(content_, width, height);
}

void X11ContainerView::setMessage(const std::string& message, bool retries) {
    gtk_label_set_text(GTK_LABEL(label_), message.c_str());
    gtk_widget_set_visible(notice_, message.empty() ? FALSE : TRUE);
    gtk_widget_set_visible(retry_, retries ? TRUE : FALSE);
    gtk_widget_set_visible(covered_, message.empty() ? TRUE : FALSE);
}

void X11ContainerView::setAccessible(GtkWidget* widget) {
    if (accessible_ != nullptr) {
        gtk_overlay_remove_overlay(GTK_OVERLAY(covered_), accessible_);
    }
    accessible_ = widget;
    if (accessible_ != nullptr) {
        gtk_overlay_add_overlay(GTK_OVERLAY(covered_), accessible_);
    }
}

bool X11ContainerView::handleXEvent(const XEvent& event) const {
    if (event.type != ClientMessage || event.xclient.window != place_.toplevel) {
        return false;
    }
    auto* display = event.xclient.display;
    return event.xclient.message_type == XInternAtom(display, "WM_PROTOCOLS", False) &&
           static_cast<Atom>(event.xclient.data.l[0]) ==
               XInternAtom(display, "WM_TAKE_FOCUS", False) &&
           onTakeFocus && onTakeFocus(static_cast<Time>(event.xclient.data.l[1]));
}

void X11ContainerView::mapped() {
    clock_ = gtk_widget_get_frame_clock(content_);
    g_object_ref(clock_);
    // GTK does not report a move by an ancestor, but draws a frame for it. "layout" is emitted
    // early enough for the foreign window to be drawn while GTK draws; "after-paint" catches the
    // rest.
    const auto update = G_CALLBACK(forward<&X11ContainerView::updatePlace>);
    g_signal_connect_after(clock_, "layout", update, this);
    g_signal_connect(clock_, "after-paint", update, this);
    gtk_widget_queue_draw(content_);
    auto* display = gtk_widget_get_display(content_);
    if (GDK_IS_X11_DISPLAY(display)) {
        g_signal_connect(display, "xevent",
                         G_CALLBACK(+[](GdkDisplay* /*display*/, const XEvent* event,
                                        X11ContainerView* view) -> gboolean {
                             return static_cast<gboolean>(view->handleXEvent(*event));
                         }),
                         this);
    }
}

void X11ContainerView::unmapped() {
    if (clock_ == nullptr) {
        return;
    }
    g_signal_handlers_disconnect_by_data(gtk_widget_get_display(content_), this);
    g_signal_handlers_disconnect_by_data(clock_, this);
    g_object_unref(std::exchange(clock_, nullptr));
    place_ = {};
    if (onHidden) {
        onHidden();
    }
}

void X11ContainerView::updatePlace() {
    auto* native = gtk_widget_get_native(content_);
    auto* surface = native == nullptr ? nullptr : gtk_native_get_surface(native);
    if (surface == nullptr || !GDK_IS_X11_SURFACE(surface)) {
        return;
    }
    const Place place{gdk_x11_surface_get_xid(surface), gtk_widget_get_scale_factor(content_),
                      rectangle(content_, native), visiblePart(content_, native)};
    const bool isUnplaced = place_.toplevel == 0;
    if ((isUnplaced && place.area.isEmpty()) || place == place_) {
        return;
    }
    if (place.toplevel != place_.toplevel) {
        // Other connections use the window only after the server has made it.
        gdk_display_sync(gdk_surface_get_display(surface));
    }
    place_ = place;
    if (onPlace) {
        onPlace(place);
    }
}

}  // namespace orvalo
