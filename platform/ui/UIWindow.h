#pragma once

#include <memory>

#include "platform/ui/UIView.h"

namespace orvalo {

class UIViewController;

/// A window of the desktop, which shows one controller and what that presents. Main thread.
class UIWindow : public UIView {
  public:
    /// Over a GtkWindow.
    explicit UIWindow(GtkWidget* widget);

    std::shared_ptr<UIViewController> rootViewController() const { return root_; }
    /// Before the window is shown first.
    void setRootViewController(const std::shared_ptr<UIViewController>& controller);
    /// Shows the window in front of the others, with the keyboard.
    void makeKeyAndVisible();

    std::shared_ptr<UIResponder> next() const override;

  private:
    friend class UIViewController;

    void push(const std::shared_ptr<UIViewController>& controller, bool animated);
    void pop(const std::shared_ptr<UIViewController>& controller, bool animated);

    std::shared_ptr<UIViewController> root_;
    std::vector<std::shared_ptr<UIViewController>> pages_;  // The one that is shown is the last.
    GtkWidget* stack_;
};

}  // namespace orvalo
