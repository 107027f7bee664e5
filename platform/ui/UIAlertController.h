#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/ui/UIAlertAction.h"
#include "platform/ui/UIViewController.h"

namespace orvalo {

/// How an alert is arranged; on a desktop both kinds are a dialog.
enum class UIAlertControllerStyle { actionSheet = 0, alert = 1 };

/// A question to the user, in a dialog that is modal for the presenter's window. The cancel action
/// stands first, the others follow in the order in which they were added; a single action of the
/// default style is what the return key takes. Escape and closing the dialog are the cancel action;
/// an alert that offers answers but no cancel action stays until one is given. Main thread.
class UIAlertController : public UIViewController {
  public:
    /// title, message: what the alert says, large and small; either may be absent.
    UIAlertController(std::optional<std::string> title, std::optional<std::string> message,
                      UIAlertControllerStyle preferredStyle);
    ~UIAlertController() override;

    /// Adds an answer, before the alert is presented. A second cancel action is a fatal error.
    void addAction(const std::shared_ptr<UIAlertAction>& action);

    const std::vector<std::shared_ptr<UIAlertAction>>& actions() const { return actions_; }
    const std::optional<std::string>& title() const { return title_; }
    const std::optional<std::string>& message() const { return message_; }
    UIAlertControllerStyle preferredStyle() const { return preferredStyle_; }

  protected:
    void beginPresentation(const std::shared_ptr<UIViewController>& presenter, bool animated,
                           const std::function<void()>& shown) override;
    void endPresentation(bool animated, const std::function<void()>& gone) override;

  private:
    std::shared_ptr<UIAlertAction> cancelAction() const;
    void makeDialog(GtkWidget* above);
    void addResponses();
    void addResponse(std::size_t index);
    void answer(const char* response);
    void leaveScreen();

    std::optional<std::string> title_;
    std::optional<std::string> message_;
    UIAlertControllerStyle preferredStyle_;
    std::vector<std::shared_ptr<UIAlertAction>> actions_;
    GtkWidget* dialog_ = nullptr;
};

}  // namespace orvalo
