#include "tests/platform/ui/PresenterFixture.h"

#include <gdk/x11/gdkx.h>

#include <cmath>

namespace orvalo::testing {

namespace {

GtkWidget* newWindow() {
    startDesktop();
    auto* window = gtk_window_new();
    gtk_window_set_default_size(GTK_WINDOW(window), 800, 600);
    return window;
}

/// The button of that label in a widget; null when there is none.
GtkWidget* findButton(GtkWidget* widget, const std::string& title) {
    if (GTK_IS_BUTTON(widget)) {
        auto* label = gtk_button_get_child(GTK_BUTTON(widget));
        if (GTK_IS_LABEL(label) && gtk_label_get_text(GTK_LABEL(label)) == title) {
            return widget;
        }
    }
    for (auto* child = gtk_widget_get_first_child(widget); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        if (auto* found = findButton(child, title)) {
            return found;
        }
    }
    return nullptr;
}

/// Waits until the widget has been laid out and drawn.
bool waitForFrames(GtkWidget* widget) {
    constexpr int enough = 3;
    int frames = 0;
    const auto count = +[](GtkWidget* drawn, GdkFrameClock*, gpointer counter) -> gboolean {
        gtk_widget_queue_draw(drawn);
        return ++*static_cast<int*>(counter) < enough ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
    };
    gtk_widget_add_tick_callback(widget, count, &frames, nullptr);
    return waitUntil([&frames] { return frames == enough; });
}

}  // namespace

PresenterFixture::PresenterFixture()
    : window(std::make_shared<UIWindow>(newWindow())),
      screen(std::make_shared<UIViewController>(std::nullopt, nullptr)) {
    window->setRootViewController(screen);
    window->makeKeyAndVisible();
    EXPECT_TRUE(
        waitUntil([this] { return gtk_window_is_active(GTK_WINDOW(window->widget())) != FALSE; }));
}

PresenterFixture::~PresenterFixture() {
    gtk_window_destroy(GTK_WINDOW(window->widget()));
}

void PresenterFixture::show(const std::shared_ptr<UIViewController>& dialog) {
    screen->present(dialog, true, nullptr);
    EXPECT_TRUE(waitUntil([this] {
        auto* shown = dialogWindow();
        return shown != nullptr && gtk_window_is_active(shown) != FALSE;
    }));
    EXPECT_TRUE(waitForFrames(GTK_WIDGET(dialogWindow())));
}

GtkWindow* PresenterFixture::dialogWindow() const {
    auto* toplevels = gtk_window_get_toplevels();
    GtkWindow* found = nullptr;
    for (guint index = 0; index < g_list_model_get_n_items(toplevels); ++index) {
        auto* toplevel = GTK_WINDOW(g_list_model_get_item(toplevels, index));
        if (GTK_WIDGET(toplevel) != window->widget() &&
            gtk_widget_get_mapped(GTK_WIDGET(toplevel)) != FALSE) {
            found = toplevel;
        }
        g_object_unref(toplevel);
    }
    return found;
}

PresenterFixture::Place PresenterFixture::placeOf(GtkWidget* widget) const {
    auto* native = GTK_NATIVE(dialogWindow());
    graphene_rect_t bounds;
    EXPECT_TRUE(gtk_widget_compute_bounds(widget, GTK_WIDGET(native), &bounds));
    double shadowX = 0;
    double shadowY = 0;
    gtk_native_get_surface_transform(native, &shadowX, &shadowY);
    auto* surface = gtk_native_get_surface(native);
    auto* display = gdk_x11_display_get_xdisplay(gdk_surface_get_display(surface));
    int x = 0;
    int y = 0;
    Window ignored = 0;
    XTranslateCoordinates(display, gdk_x11_surface_get_xid(surface), DefaultRootWindow(display), 0,
                          0, &x, &y, &ignored);
    return {x + static_cast<int>(std::lround(shadowX + bounds.origin.x + bounds.size.width / 2)),
            y + static_cast<int>(std::lround(shadowY + bounds.origin.y + bounds.size.height / 2))};
}

GtkWidget* PresenterFixture::button(const std::string& title) const {
    return findButton(GTK_WIDGET(dialogWindow()), title);
}

void PresenterFixture::click(const std::string& title) const {
    auto* target = button(title);
    ASSERT_NE(target, nullptr) << title;
    const auto place = placeOf(target);
    act({"mousemove", std::to_string(place.x), std::to_string(place.y), "click", "1"});
}

}  // namespace orvalo::testing
