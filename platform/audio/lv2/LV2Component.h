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

/// The components that the bundles state, by plug-in URI. A statement that is incomplete or wrong
/// is left out with a warning that names bundle and plug-in. Where several bundles speak of one
/// plug-in the first by bundle URI holds, and a warning names the others.
std::vector<LV2Component> statedComponents(std::vector<const LV2Bundle*> bundles);

}  // namespace orvalo
