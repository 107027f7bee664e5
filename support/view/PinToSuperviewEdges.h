#pragma once

namespace orvalo {

class UIView;

/// Makes the view fill its superview: constrains its top, leading, bottom and trailing edges to the
/// superview's, in place of its frame. Does nothing without a superview. Every call adds four
/// constraints. Main thread.
void pinToSuperviewEdges(UIView& view);

}  // namespace orvalo
