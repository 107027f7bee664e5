#include "platform/ui/UIWindow.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <utility>

#include "platform/foundation/DispatchQueue.h"
#include "platform/ui/MainThread.h"
#include "platform/ui/ScreenBin.h"
#include "platform/ui/UIApplication.h"
#include "platform/ui/UIViewController.h"

namespace orvalo {

UIWindow::UIWindow(GtkWidget* widget) : UIView(widget), stack_(gtk_stack_new()) {
    gtk_window_set_child(GTK_WINDOW(widget), stack_);
}

std::shared_ptr<UIViewController> UIWindow::rootViewController() const {
    return pages_.empty() ? nullptr : pages_.front().controller;
}

void UIWindow::setRootViewController(const std::shared_ptr<UIViewController>& controller) {
    requireMainThread("UIWindow.rootViewController");
    controller->window_ = weak(this);
    pages_ = {{controller, nullptr}};
}

void UIWindow::makeKeyAndVisible() {
    requireMainThread("UIWindow.makeKeyAndVisible");
    if (!pages_.empty() && pages_.front().widget == nullptr) {
        auto& root = pages_.front();
        root.controller->appear(false);
        root.widget = addPage(root.controller);
    }
    gtk_window_present(GTK_WINDOW(widget()));
    // Shortcuts come first until the user moves the focus.
    gtk_window_set_focus(GTK_WINDOW(widget()), nullptr);
}

GtkWidget* UIWindow::addPage(const std::shared_ptr<UIViewController>& controller) {
    auto* page = newScreenBin(controller->view()->widget(), [held = std::weak_ptr(controller)] {
        if (const auto shown = held.lock()) {
            shown->layout();
        }
    });
    gtk_stack_add_child(GTK_STACK(stack_), page);
    return page;
}

void UIWindow::push(const std::shared_ptr<UIViewController>& controller, bool animated,
                    const std::function<void()>& then) {
    controller->window_ = weak(this);
    controller->appear(animated);
    const auto below = pages_.back();
    pages_.push_back({controller, addPage(controller)});
    // Its shortcuts would be taken otherwise, unseen.
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
            gtk_stack_remove(GTK_STACK(self->stack_), page.widget);
        }
        if (then) {
            then();
        }
    });
}

void UIWindow::show(GtkWidget* page, bool animated, std::function<void()> then) {
    auto* stack = GTK_STACK(stack_);
    gtk_stack_set_transition_type(
        stack, animated ? GTK_STACK_TRANSITION_TYPE_CROSSFADE : GTK_STACK_TRANSITION_TYPE_NONE);
    gtk_stack_set_visible_child(stack, page);
    if (gtk_stack_get_transition_running(stack) == FALSE) {
        DispatchQueue::main()->async([then = std::move(then)] { then(); });
        return;
    }
    using Then = std::function<void()>;
    const auto ended = +[](GObject* object, GParamSpec*, Then* waiting) {
        if (gtk_stack_get_transition_running(GTK_STACK(object)) == FALSE) {
            const Then once = std::exchange(*waiting, nullptr);
            // The closure goes with its handler.
            g_signal_handlers_disconnect_matched(object, G_SIGNAL_MATCH_DATA, 0, 0, nullptr,
                                                 nullptr, waiting);
            once();
        }
    };
    g_signal_connect_data(
        stack, "notify::transition-running", G_CALLBACK(ended), new Then(std::move(then)),
        [](void* waiting, GClosure*) { delete static_cast<Then*>(waiting); }, GConnectFlags{});
}

std::shared_ptr<UIResponder> UIWindow::next() const {
    return UIApplication::shared();
}

}  // namespace orvalo
