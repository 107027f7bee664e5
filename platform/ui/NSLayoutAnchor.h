#pragma once

#include <memory>

namespace orvalo {

class NSLayoutConstraint;
class UIView;

/// An edge of a view, from which constraints are made. Main thread.
class NSLayoutAnchor {
  public:
    enum class Attribute { top, leading, bottom, trailing };

    NSLayoutAnchor(const std::shared_ptr<UIView>& view, Attribute attribute);

    /// A constraint, not active yet, that keeps this edge where the other one is. Required.
    std::shared_ptr<NSLayoutConstraint> constraint(const NSLayoutAnchor& equalTo) const;

    std::shared_ptr<UIView> view() const { return view_.lock(); }
    Attribute attribute() const { return attribute_; }

  private:
    std::weak_ptr<UIView> view_;
    Attribute attribute_;
};

}  // namespace orvalo
