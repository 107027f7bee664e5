#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ui/UIView.h"

using GtkStack = struct _GtkStack;  // NOLINT(bugprone-reserved-identifier): GTK's own.

namespace orvalo {

class UIViewController;

/// A window that shows one controller and those that it presents. Main thread.
class UIWindow : public UIView {
  public:
    /// Over a GtkWindow.
    explicit UIWindow(GtkWidget* widget);
    ~UIWindow() override;

    std::shared_ptr<UIViewController> rootViewController() const;
    /// Call it before makeKeyAndVisible().
    void setRootViewController(const std::shared_ptr<UIViewController>& controller);
    /// Sets the text of the title bar.
    void setTitle(const std::string& title);
    /// Shows the window in front of the others, with the keyboard focus.
    void makeKeyAndVisible();

    std::shared_ptr<UIResponder> next() const override;

  private:
    friend class UIViewController;

    /// Shows a controller in place of the current one. then: called when the transition has ended.
    void push(const std::shared_ptr<UIViewController>& controller, bool animated,
              const std::function<void()>& then);
    /// Removes that controller and those above it.
    void pop(const std::shared_ptr<UIViewController>& controller, bool animated,
             const std::function<void()>& then);
    void show(GtkWidget* page, bool animated, std::function<void()> then);
    /// Runs pending_: the transition has ended, or the next one begins.
    void settle();
    GtkWidget* addPage(const std::shared_ptr<UIViewController>& controller);

    struct Page {
        std::shared_ptr<UIViewController> controller;
        GtkWidget* widget;  // Null until the controller is shown first.
    };
    std::vector<Page> pages_;  // The visible page is the last.
    GtkStack* const stack_;
    std::function<void()> pending_;
    std::uint64_t turn_ = 0;  // Counts the transitions without animation.
};

}  // namespace orvalo
