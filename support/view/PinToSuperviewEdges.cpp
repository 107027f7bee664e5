#include "support/view/PinToSuperviewEdges.h"

#include "platform/ui/NSLayoutConstraint.h"
#include "platform/ui/UIView.h"

namespace orvalo {

void pinToSuperviewEdges(UIView& view) {
    const auto superview = view.superview();
    if (!superview) {
        return;
    }
    view.setTranslatesAutoresizingMaskIntoConstraints(false);
    NSLayoutConstraint::activate({
        view.topAnchor().constraint(superview->topAnchor()),
        view.leadingAnchor().constraint(superview->leadingAnchor()),
        view.bottomAnchor().constraint(superview->bottomAnchor()),
        view.trailingAnchor().constraint(superview->trailingAnchor()),
    });
}

}  // namespace orvalo
