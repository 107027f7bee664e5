#include "platform/ui/NSLayoutAnchor.h"

#include "platform/ui/MainThread.h"
#include "platform/ui/NSLayoutConstraint.h"
#include "platform/ui/UIView.h"

namespace orvalo {

NSLayoutAnchor::NSLayoutAnchor(const std::shared_ptr<UIView>& view, Attribute attribute)
    : view_(view), attribute_(attribute) {
    requireMainThread("NSLayoutAnchor");
}

std::shared_ptr<NSLayoutConstraint> NSLayoutAnchor::constraint(
    const NSLayoutAnchor& equalTo) const {
    return std::make_shared<NSLayoutConstraint>(*this, equalTo);
}

}  // namespace orvalo
