#pragma once

#include <memory>
#include <string>

#include "platform/audio/unit/AUAudioUnit.h"

namespace orvalo {

/// Makes an instance of the LV2 plug-in with that URI in a process of its own, not yet at any rate.
/// Returns once it is there. Throws NSError as makeLV2AudioUnit() does, and when it does not
/// survive being made.
std::shared_ptr<AUAudioUnit> makeBridgedAudioUnit(const std::string& uri,
                                                  const AudioComponentDescription& description);

}  // namespace orvalo
