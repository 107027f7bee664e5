#pragma once

#include <memory>
#include <vector>

#include "platform/audio/lv2/LV2Bundle.h"
#include "platform/audio/unit/AVAudioUnitComponent.h"

namespace orvalo {

/// The components that the bundles state, by plug-in URI. Codes that are incomplete or wrong are
/// left out with a warning that names bundle and plug-in. Where several bundles state codes of one
/// plug-in, the first on the path wins, and a warning names the others.
std::vector<std::shared_ptr<AVAudioUnitComponent>> statedComponents(
    const std::vector<LV2Bundle>& bundles);

}  // namespace orvalo
