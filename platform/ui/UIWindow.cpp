#include "platform/ui/UIWindow.h"

#include <adwaita.h>

#include <algorithm>
#include <utility>

#include "platform/foundation/DispatchQueue.h"
#include "platform/ui/MainThread.h"
#include "platform/ui/UIApplication.h"
#include "platform/ui/UIViewController.h"

namespace orvalo {

namespace {

constexpr const char* laidOutKey = "orvalo-laid-out";

void measureScreen(GtkWidget* bin, GtkOrientation orientation, int forSize, int* minimum,
                   int* natural, int* /*minimumBaseline*/, int* /*naturalBaseline*/) {
    gtk_widget_measure(gtk_widget_get_first_child(bin), orientation, forSize, minimum, natural,
                       nullptr, nullptr);
}

void allocateScreen(GtkWidget* bin, int width, int height, int baseline) {
    gtk_widget_allocate(gtk_widget_get_first_child(bin), width, height, baseline, nullptr);
    (*static_cast<std::function<void()>*>(g_object_get_data(G_OBJECT(bin), laidOutKey)))();
}

/// A widget around a screen's widget. Calls laidOut after every allocation of the screen, for which
/// the toolkit has no signal.
GtkWidget* newScreenBin(GtkWidget* screen, std::function<void()> laidOut) {
    auto* bin = adw_bin_new();
    g_object_set_data_full(G_OBJECT(bin), laidOutKey, new std::function(std::move(laidOut)),
                           [](void* held) { delete static_cast<std::function<void()>*>(held); });
    gtk_widget_set_layout_manager(bin,
                                  gtk_custom_layout_new(nullptr, measureScreen, allocateScreen));
    adw_bin_set_child(ADW_BIN(bin), screen);
    return bin;
}

}  // namespace

UIWindow::UIWindow(GtkWidget* widget)
    : UIView(widget), stack_(GTK_STACK(g_object_ref_sink(gtk_stack_new()))) {
    gtk_window_set_child(GTK_WINDOW(widget), GTK_WIDGET(stack_));
    g_signal_connect_swapped(stack_, "notify::transition-running",
                             G_CALLBACK(+[](UIWindow* window) {
                                 if (gtk_stack_get_transition_running(window->stack_) == FALSE) {
                                     window->settle();
                                 }
                             }),
                             this);
}

UIWindow::~UIWindow() {
    g_signal_handlers_disconnect_by_data(stack_, this);
    g_object_unref(stack_);
}

std::shared_ptr<UIViewController> UIWindow::rootViewController() const {
    return pages_.empty() ? nullptr : pages_.front().controller;
}

void UIWindow::setRootViewController(const std::shared_ptr<UIViewController>& controller) {
    requireMainThread("UIWindow.rootViewController");
    controller->window_ = weak(this);
    pages_ = {{controller, nullptr}};
}

void UIWindow::setTitle(const std::string& title) {
    requireMainThread("UIWindow.title");
    gtk_window_set_title(GTK_WINDOW(widget()), title.c_str());
}

void UIWindow::makeKeyAndVisible() {
    requireMainThread("UIWindow.makeKeyAndVisible");
    if (!pages_.empty() && pages_.front().widget == nullptr) {
        auto& root = pages_.front();
        root.controller->appear(false);
        root.widget = addPage(root.controller);
    }
    auto* window = GTK_WINDOW(widget());
    gtk_window_present(window);
    // Without a focused widget, keys are shortcuts until the user moves the focus.
    gtk_window_set_focus(window, nullptr);
}

GtkWidget* UIWindow::addPage(const std::shared_ptr<UIViewController>& controller) {
    auto* page = newScreenBin(controller->view()->widget(), [held = std::weak_ptr(controller)] {
        if (const auto shown = held.lock()) {
            shown->layout();
        }
    });
    gtk_stack_add_child(stack_, page);
    return page;
}

void UIWindow::push(const std::shared_ptr<UIViewController>& controller, bool animated,
                    const std::function<void()>& then) {
    settle();
    controller->window_ = weak(this);
    controller->appear(animated);
    const auto below = pages_.back();
    pages_.push_back({controller, addPage(controller)});
    // Otherwise its shortcuts would work although it is not visible.
    gtk_widget_set_sensitive(below.widget, FALSE);
    show(pages_.back().widget, animated, [below, animated, then] {
        below.controller->disappear(animated);
        if (then) {
            then();
        }
    });
}

void UIWindow::pop(const std::shared_ptr<UIViewController>& controller, bool animated,
                   const std::function<void()>& then) {
    settle();
    const auto from = std::find_if(pages_.begin(), pages_.end(), [&controller](const auto& page) {
        return page.controller == controller;
    });
    if (from == pages_.end() || from == pages_.begin()) {
        return;
    }
    const std::vector<Page> leaving(from, pages_.end());
    pages_.erase(from, pages_.end());
    gtk_widget_set_sensitive(pages_.back().widget, TRUE);
    pages_.back().controller->appear(animated);
    show(pages_.back().widget, animated, [self = shared(this), leaving, animated, then] {
        for (const auto& page : leaving) {
            page.controller->disappear(animated);
            page.controller->window_.reset();
            gtk_stack_remove(self->stack_, page.widget);
        }
        if (then) {
            then();
        }
    });
}

void UIWindow::show(GtkWidget* page, bool animated, std::function<void()> then) {
    gtk_stack_set_transition_type(
        stack_, animated ? GTK_STACK_TRANSITION_TYPE_CROSSFADE : GTK_STACK_TRANSITION_TYPE_NONE);
    gtk_stack_set_visible_child(stack_, page);
    pending_ = std::move(then);
    if (gtk_stack_get_transition_running(stack_) == FALSE) {
        DispatchQueue::main()->async([self = shared(this), turn = ++turn_] {
            if (self->turn_ == turn) {
                self->settle();
            }
        });
    }
}

void UIWindow::settle() {
    if (const auto then = std::exchange(pending_, nullptr)) {
        then();
    }
}

std::shared_ptr<UIResponder> UIWindow::next() const {
    return UIApplication::shared();
}

}  // namespace orvalo
