#pragma once

namespace orvalo {

class UIView;

/// Has the view fill its superview and follow its extent: its top, leading, bottom and trailing
/// edges are constrained to the superview's, in place of its frame. Without a superview nothing
/// happens. Every call adds its four constraints. Main thread.
void pinToSuperviewEdges(UIView& view);

}  // namespace orvalo
