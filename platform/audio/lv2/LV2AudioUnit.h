#pragma once

#include <memory>
#include <string>

#include "platform/audio/unit/AUAudioUnit.h"

namespace orvalo {

/// Makes an instance of the LV2 plug-in with that URI in this process, not yet at any rate. Throws
/// NSError that names the plug-in and what is wrong with it: unknown, a feature it requires that
/// this host does not have, ports that it cannot serve, a library that does not load.
std::shared_ptr<AUAudioUnit> makeLV2AudioUnit(const std::string& uri,
                                              const AudioComponentDescription& description);

}  // namespace orvalo
