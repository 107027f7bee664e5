#pragma once

#include <string>
#include <vector>

#include "platform/audio/lv2/LV2Bundle.h"
#include "platform/audio/unit/AudioComponentDescription.h"

namespace orvalo {

/// A plug-in for which a manifest states component codes.
struct LV2Component {
    std::string uri;
    std::string name;
    AudioComponentDescription description;
};

/// The components that the bundles state, by plug-in URI. Codes that are incomplete or wrong are
/// left out with a warning that names bundle and plug-in. Where several bundles state codes of one
/// plug-in, the first on the path wins, and a warning names the others.
std::vector<LV2Component> statedComponents(const std::vector<LV2Bundle>& bundles);

}  // namespace orvalo
