#pragma once

#include <memory>
#include <string>

#include "platform/foundation/NSObject.h"

namespace orvalo {

/// What takes part in the handling of user actions. Main thread.
class UIResponder : public NSObject {
  public:
    /// Who is asked when this responder does not know an action; absent at the end of the chain.
    virtual std::shared_ptr<UIResponder> next() const;

    /// Whether the action, by its name in the layout, can be performed now: when this responder's
    /// class has it, else what the next responder says.
    virtual bool canPerformAction(const std::string& action,
                                  const std::shared_ptr<NSObject>& withSender);
};

}  // namespace orvalo
