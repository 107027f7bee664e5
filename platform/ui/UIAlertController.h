#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/ui/UIViewController.h"

namespace orvalo {

enum class UIAlertActionStyle {
    default_ = 0,
    cancel = 1,       ///< Changes nothing.
    destructive = 2,  ///< May destroy data; drawn as a warning.
};

/// A button of an alert.
class UIAlertAction : public NSObject {
  public:
    using Handler = std::function<void(const std::shared_ptr<UIAlertAction>&)>;

    /// handler (may be empty): called with the action on the main thread, after the alert has
    /// closed.
    UIAlertAction(std::string title, UIAlertActionStyle style, Handler handler)
        : title_(std::move(title)), style_(style), handler_(std::move(handler)) {}

    const std::string& title() const { return title_; }
    UIAlertActionStyle style() const { return style_; }

  private:
    friend class UIAlertController;

    std::string title_;
    UIAlertActionStyle style_;
    Handler handler_;
};

/// How an alert is arranged; on a desktop both kinds are a dialog.
enum class UIAlertControllerStyle { actionSheet = 0, alert = 1 };

/// A question to the user in a dialog, modal for the presenter's window. The cancel action stands
/// first, the others follow in the order of their addition. The return key performs the only action
/// of the default style. Escape and closing the dialog perform the cancel action; an alert with
/// actions but no cancel action stays open until the user picks one. Main thread.
class UIAlertController : public UIViewController {
  public:
    /// title, message: the large and the small text; either may be absent.
    UIAlertController(std::optional<std::string> title, std::optional<std::string> message,
                      UIAlertControllerStyle preferredStyle);
    ~UIAlertController() override;

    /// Adds a button, before the presentation. A second cancel action is a fatal error.
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
