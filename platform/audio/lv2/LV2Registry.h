#pragma once

#include <vector>

#include "platform/audio/lv2/LV2Component.h"

namespace orvalo {

/// The components of the environment's search path and the application's own folder, in the
/// registry's order. Any thread.
std::vector<LV2Component> registeredLV2Components();

}  // namespace orvalo
