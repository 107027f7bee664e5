#pragma once

#include <string>
#include <vector>

#include "platform/audio/lv2/LV2Port.h"
#include "platform/audio/lv2/LV2World.h"

namespace orvalo {

/// The plug-in's ports by their index. A port of an unknown kind, or without a direction, is
/// unconnected when the plug-in can do without it. Throws NSError that names what is wrong.
std::vector<LV2Port> readPorts(const LV2World::Access& access, const LilvPlugin* plugin,
                               const std::string& uri);

}  // namespace orvalo
