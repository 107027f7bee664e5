#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/audio/lv2/LV2State.h"
#include "platform/audio/unit/AUAudioUnitPreset.h"

namespace orvalo {

/// A preset that some bundle holds for a plug-in.
struct LV2Preset {
    std::string uri;
    std::string label;  ///< Its URI when it has none.
};

/// The plug-in's presets by label, then by URI.
std::vector<LV2Preset> findPresets(LV2World& world, const std::string& pluginURI);

/// The same as a unit gives them, numbered from 0.
std::vector<std::shared_ptr<AUAudioUnitPreset>> numbered(const std::vector<LV2Preset>& presets);

/// The one of that number; null for an absent preset, or a number that none has.
const LV2Preset* presetFor(const std::vector<LV2Preset>& presets,
                           const std::shared_ptr<AUAudioUnitPreset>& preset);

/// A preset's or a plug-in's own default state; null, with a warning, when it cannot be read.
LV2State readState(LV2World& world, const std::string& uri);

}  // namespace orvalo
