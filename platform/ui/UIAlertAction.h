#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/foundation/NSObject.h"

namespace orvalo {

enum class UIAlertActionStyle {
    default_ = 0,
    cancel = 1,       ///< Leaves everything as it is.
    destructive = 2,  ///< May lose something; drawn as a warning.
};

/// An answer that an alert offers: a button.
class UIAlertAction : public NSObject {
  public:
    using Handler = std::function<void(const std::shared_ptr<UIAlertAction>&)>;

    /// handler (may be empty): called with the action, on the main thread, once the answer was
    /// given and the alert has left the screen.
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

}  // namespace orvalo
