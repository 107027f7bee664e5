#pragma once

#include "platform/foundation/NSObject.h"

namespace orvalo {

/// A colour, sRGB. Components are 0 to 1; values beyond are kept. Immutable: any thread.
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

}  // namespace orvalo
