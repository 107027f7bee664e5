#pragma once

#include <memory>
#include <vector>

#include "platform/foundation/NSObject.h"

using GtkConstraint = struct _GtkConstraint;  // NOLINT(bugprone-reserved-identifier): GTK's own.

namespace orvalo {

class NSLayoutConstraint;
class UIView;

/// An edge of a view. Main thread.
class NSLayoutAnchor {
  public:
    enum class Attribute { top, leading, bottom, trailing };

    NSLayoutAnchor(const std::shared_ptr<UIView>& view, Attribute attribute);

    /// A new, inactive constraint: this edge equals the other one. Required.
    std::shared_ptr<NSLayoutConstraint> constraint(const NSLayoutAnchor& equalTo) const;

    std::shared_ptr<UIView> view() const { return view_.lock(); }
    Attribute attribute() const { return attribute_; }

  private:
    std::weak_ptr<UIView> view_;
    Attribute attribute_;
};

/// The equality of two edges, of a view and its superview or of two views of one superview. Main
/// thread.
class NSLayoutConstraint : public NSObject {
  public:
    NSLayoutConstraint(NSLayoutAnchor first, NSLayoutAnchor second);
    ~NSLayoutConstraint() override;

    /// Activates the constraints in this order. Views that are neither superview and subview nor
    /// subviews of one superview are a fatal error.
    static void activate(const std::vector<std::shared_ptr<NSLayoutConstraint>>& constraints);

    const NSLayoutAnchor& firstAnchor() const { return first_; }
    const NSLayoutAnchor& secondAnchor() const { return second_; }

  private:
    friend class UIView;

    void activate();
    bool touches(const UIView& view) const;
    /// Removes the constraint from the view that owns it.
    void deactivate(UIView& owner);

    NSLayoutAnchor first_;
    NSLayoutAnchor second_;
    GtkConstraint* constraint_ = nullptr;
};

}  // namespace orvalo
