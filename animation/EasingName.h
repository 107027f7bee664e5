#pragma once

#include <string>

#include "animation/EnumEasing.h"

namespace orvalo {

/// The curve's name, as "easeInOutQuad". type: one of the curves; the end marker and what is no
/// case have no name, an empty text.
std::string easingName(EnumEasing type);

}  // namespace orvalo
