#pragma once

#include "platform/ui/UIColor.h"

namespace orvalo {

/// A colour's components, neither clamped nor converted.
inline double redValue(const UIColor& color) {
    return CIColor(color).red;
}
inline double greenValue(const UIColor& color) {
    return CIColor(color).green;
}
inline double blueValue(const UIColor& color) {
    return CIColor(color).blue;
}
inline double alphaValue(const UIColor& color) {
    return CIColor(color).alpha;
}

}  // namespace orvalo
