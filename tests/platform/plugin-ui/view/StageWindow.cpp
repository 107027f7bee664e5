#include "tests/platform/plugin-ui/view/StageWindow.h"

#include <X11/Xlib.h>
#include <fcntl.h>
#include <gdk/x11/gdkx.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <optional>
#include <stdexcept>

#include "platform/plugin-ui/view/LV2ViewController.h"
#include "platform/ui/NSLayoutConstraint.h"
#include "tests/platform/plugin-ui/x11/Screen.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

/// Starts a window manager on the virtual display; it ends with the program.
void startWindowManager() {
    auto* display = screen();
    const auto isThere = [display] {
        const auto name = XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False);
        Atom type = 0;
        int format = 0;
        unsigned long count = 0;
        unsigned long rest = 0;
        unsigned char* data = nullptr;
        XGetWindowProperty(display, DefaultRootWindow(display), name, 0, 1, False, AnyPropertyType,
                           &type, &format, &count, &rest, &data);
        if (data != nullptr) {
            XFree(data);
        }
        return count > 0;
    };
    if (isThere()) {
        return;
    }
    if (fork() == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        const int null = open("/dev/null", O_RDWR);
        for (const int standard : {0, 1, 2}) {
            dup2(null, standard);
        }
        execlp("openbox", "openbox", "--sm-disable", nullptr);
        _exit(127);
    }
    if (!pollUntil(isThere)) {
        throw std::runtime_error("The window manager did not start.");
    }
}

}  // namespace

void startToolkit() {
    static const bool isStarted = [] {
        screen();
        startWindowManager();
        gtk_init();
        LV2ViewController::enable();
        return true;
    }();
    static_cast<void>(isStarted);
}

std::shared_ptr<UIViewController> requestPluginUI(AUAudioUnit& unit) {
    std::optional<std::shared_ptr<UIViewController>> delivered;
    unit.requestViewController([&delivered](const auto& controller) { delivered = controller; });
    pollUntil([&delivered] { return delivered.has_value(); });
    return delivered.value_or(nullptr);
}

StageWindow::StageWindow()
    : window_(gtk_window_new()),
      button_(gtk_button_new_with_label("Play")),
      stage_(std::make_shared<UIView>()) {
    gtk_window_set_default_size(GTK_WINDOW(window_), 700, 500);
    auto* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_append(GTK_BOX(box), button_);
    gtk_widget_set_vexpand(stage_->widget(), TRUE);
    gtk_box_append(GTK_BOX(box), stage_->widget());
    gtk_window_set_child(GTK_WINDOW(window_), box);
    g_signal_connect_swapped(button_, "clicked", G_CALLBACK(+[](int* count) { ++*count; }),
                             &presses_);
    g_object_add_weak_pointer(G_OBJECT(window_), reinterpret_cast<void**>(&window_));
}

StageWindow::~StageWindow() {
    close();
}

void StageWindow::embed(UIViewController& controller) const {
    const auto view = controller.view();
    view->setFrame(stage_->bounds());
    stage_->addSubview(view);
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    NSLayoutConstraint::activate({view->topAnchor().constraint(stage_->topAnchor()),
                                  view->leadingAnchor().constraint(stage_->leadingAnchor()),
                                  view->bottomAnchor().constraint(stage_->bottomAnchor()),
                                  view->trailingAnchor().constraint(stage_->trailingAnchor())});
}

void StageWindow::close() {
    if (window_ != nullptr) {
        gtk_window_destroy(GTK_WINDOW(window_));
    }
}

X11Rect StageWindow::place() const {
    return placeOf(stage_->widget());
}

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
