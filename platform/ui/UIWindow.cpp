#include "platform/ui/UIWindow.h"

#include <gtkmm/init.h>
#include <gtkmm/object.h>
#include <gtkmm/stack.h>
#include <gtkmm/window.h>

#include <algorithm>
#include <utility>

#include "platform/foundation/DispatchQueue.h"
#include "platform/ui/MainThread.h"
#include "platform/ui/ScreenBin.h"
#include "platform/ui/UIApplication.h"
#include "platform/ui/UIViewController.h"

namespace orvalo {

namespace {

Gtk::Window& windowOf(const UIView& view) {
    // Also for windows that were made without the C++ toolkit.
    Gtk::init_gtkmm_internals();
    return *Glib::wrap(GTK_WINDOW(view.widget()));
}

}  // namespace

UIWindow::UIWindow(GtkWidget* widget) : UIView(widget) {
    auto& window = windowOf(*this);
    stack_ = Gtk::make_managed<Gtk::Stack>();
    window.set_child(*stack_);
    transitions_ = stack_->property_transition_running().signal_changed().connect([this] {
        if (!stack_->get_transition_running()) {
            settle();
        }
    });
}

UIWindow::~UIWindow() {
    transitions_.disconnect();
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
    auto& window = windowOf(*this);
    window.present();
    // Shortcuts come first until the user moves the focus.
    window.unset_focus();
}

Gtk::Widget* UIWindow::addPage(const std::shared_ptr<UIViewController>& controller) {
    auto* page =
        Glib::wrap(newScreenBin(controller->view()->widget(), [held = std::weak_ptr(controller)] {
            if (const auto shown = held.lock()) {
                shown->layout();
            }
        }));
    stack_->add(*page);
    return page;
}

void UIWindow::push(const std::shared_ptr<UIViewController>& controller, bool animated,
                    const std::function<void()>& then) {
    settle();
    controller->window_ = weak(this);
    controller->appear(animated);
    const auto below = pages_.back();
    pages_.push_back({controller, addPage(controller)});
    // Its shortcuts would be taken otherwise, unseen.
    below.widget->set_sensitive(false);
    show(*pages_.back().widget, animated, [below, animated, then] {
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
    pages_.back().widget->set_sensitive(true);
    pages_.back().controller->appear(animated);
    show(*pages_.back().widget, animated, [self = shared(this), leaving, animated, then] {
        for (const auto& page : leaving) {
            page.controller->disappear(animated);
            page.controller->window_.reset();
            self->stack_->remove(*page.widget);
        }
        if (then) {
            then();
        }
    });
}

void UIWindow::show(Gtk::Widget& page, bool animated, std::function<void()> then) {
    stack_->set_transition_type(animated ? Gtk::StackTransitionType::CROSSFADE
                                         : Gtk::StackTransitionType::NONE);
    stack_->set_visible_child(page);
    pending_ = std::move(then);
    if (!stack_->get_transition_running()) {
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
