#include "platform/audio/lv2/LV2AudioUnit.h"

#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/audio/lv2/LV2World.h"

namespace orvalo {

std::shared_ptr<AUAudioUnit> makeLV2AudioUnit(const std::string& uri,
                                              const AudioComponentDescription& description) {
    return std::make_shared<LV2LocalAudioUnit>(LV2World::shared(), uri, description);
}

}  // namespace orvalo
