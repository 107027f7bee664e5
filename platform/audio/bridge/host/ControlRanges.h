#pragma once

#include <vector>

#include "platform/audio/bridge/host/ControlRange.h"
#include "platform/audio/lv2/LV2PluginData.h"

namespace orvalo {

/// Of all control inputs of a plug-in.
std::vector<ControlRange> readControlRanges(const LV2World::Access& access,
                                            const LV2PluginData& data);

}  // namespace orvalo
