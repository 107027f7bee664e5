#pragma once

#include "platform/foundation/NSObject.h"

namespace orvalo {

/// An sRGB colour. Components from 0 to 1; values outside are kept. Immutable: any thread.
class UIColor : public NSObject {
  public:
    UIColor(double red, double green, double blue, double alpha)
        : red_(red), green_(green), blue_(blue), alpha_(alpha) {}
    /// A grey.
    UIColor(double white, double alpha) : UIColor(white, white, white, alpha) {}

  private:
    friend class CIColor;

    double red_;
    double green_;
    double blue_;
    double alpha_;
};

/// The unchanged components of a colour for image processing. Immutable: any thread.
class CIColor : public NSObject {
  public:
    explicit CIColor(const UIColor& color)
        : red(color.red_), green(color.green_), blue(color.blue_), alpha(color.alpha_) {}

    const double red;
    const double green;
    const double blue;
    const double alpha;
};

}  // namespace orvalo
