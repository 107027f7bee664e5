#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/ui/UIView.h"

using GtkStack = struct _GtkStack;  // NOLINT(bugprone-reserved-identifier): GTK's own.

namespace orvalo {

class UIViewController;

/// A window of the desktop, which shows one controller and what that presents. Main thread.
class UIWindow : public UIView {
  public:
    /// Over a GtkWindow.
    explicit UIWindow(GtkWidget* widget);
    ~UIWindow() override;

    std::shared_ptr<UIViewController> rootViewController() const;
    /// Before the window is shown first.
    void setRootViewController(const std::shared_ptr<UIViewController>& controller);
    /// Shows the window in front of the others, with the keyboard.
    void makeKeyAndVisible();

    std::shared_ptr<UIResponder> next() const override;

  private:
    friend class UIViewController;

    /// Shows a controller in place of the one that is shown; then runs when it is in place.
    void push(const std::shared_ptr<UIViewController>& controller, bool animated,
              const std::function<void()>& then);
    /// Takes that controller, and what stands above it, away.
    void pop(const std::shared_ptr<UIViewController>& controller, bool animated,
             const std::function<void()>& then);
    void show(GtkWidget* page, bool animated, std::function<void()> then);
    /// What was to follow the change of pages under way, now: before the next one at the latest.
    void settle();
    GtkWidget* addPage(const std::shared_ptr<UIViewController>& controller);

    struct Page {
        std::shared_ptr<UIViewController> controller;
        GtkWidget* widget;  // Null until it is shown first.
    };
    std::vector<Page> pages_;  // The one that is shown is the last.
    GtkStack* const stack_;
    std::function<void()> pending_;
    std::uint64_t turn_ = 0;  // Of the changes without an animation.
};

}  // namespace orvalo
