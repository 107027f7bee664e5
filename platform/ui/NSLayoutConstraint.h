#pragma once

#include <memory>
#include <vector>

#include "platform/foundation/NSObject.h"
#include "platform/ui/NSLayoutAnchor.h"

using GtkConstraint = struct _GtkConstraint;  // NOLINT(bugprone-reserved-identifier): GTK's own.

namespace orvalo {

/// An equality between two edges: of a view and its superview, or of two views side by side in one.
/// Main thread.
class NSLayoutConstraint : public NSObject {
  public:
    NSLayoutConstraint(NSLayoutAnchor first, NSLayoutAnchor second);
    ~NSLayoutConstraint() override;

    /// Makes the constraints hold, in this order. One whose views have no view in common around
    /// them, or are not its direct subviews, is a fatal error.
    static void activate(const std::vector<std::shared_ptr<NSLayoutConstraint>>& constraints);

    const NSLayoutAnchor& firstAnchor() const { return first_; }
    const NSLayoutAnchor& secondAnchor() const { return second_; }

  private:
    friend class UIView;

    void activate();
    bool touches(const UIView& view) const;
    /// Ends the constraint in the view that holds it.
    void deactivate(UIView& owner);

    NSLayoutAnchor first_;
    NSLayoutAnchor second_;
    GtkConstraint* constraint_ = nullptr;
};

}  // namespace orvalo
