#pragma once

#include <memory>
#include <string>

#include "platform/foundation/NSObject.h"

namespace orvalo {

/// An object in the chain that handles user actions. Main thread.
class UIResponder : public NSObject {
  public:
    /// The responder after this one in the chain; absent at the end.
    virtual std::shared_ptr<UIResponder> next() const;

    /// Whether this responder or one after it has the action of that name.
    virtual bool canPerformAction(const std::string& action,
                                  const std::shared_ptr<NSObject>& withSender);
};

}  // namespace orvalo
