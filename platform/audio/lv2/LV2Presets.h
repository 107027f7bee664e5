#pragma once

#include <string>
#include <vector>

#include "platform/audio/lv2/LV2State.h"

namespace orvalo {

/// A preset of a plug-in, in any bundle.
struct LV2Preset {
    std::string uri;
    std::string label;  ///< Its URI when it has none.
};

/// The plug-in's presets by label, then by URI.
std::vector<LV2Preset> findPresets(LV2World& world, const std::string& pluginURI);

/// A preset's or a plug-in's own default state; null, with a warning, when it cannot be read.
LV2State readState(LV2World& world, const std::string& uri);

}  // namespace orvalo
