#include "platform/ui/UIResponder.h"

namespace orvalo {

std::shared_ptr<UIResponder> UIResponder::next() const {
    return nullptr;
}

bool UIResponder::canPerformAction(const std::string& action,
                                   const std::shared_ptr<NSObject>& withSender) {
    const auto following = next();
    return following && following->canPerformAction(action, withSender);
}

}  // namespace orvalo
