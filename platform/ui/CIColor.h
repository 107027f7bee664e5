#pragma once

#include "platform/foundation/NSObject.h"
#include "platform/ui/UIColor.h"

namespace orvalo {

/// A colour in image processing: its components, unchanged. Immutable: any thread.
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
