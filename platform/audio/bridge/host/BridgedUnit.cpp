#include "platform/audio/bridge/host/BridgedUnit.h"

#include "platform/audio/bridge/host/BridgedAudioUnit.h"
#include "platform/audio/lv2/LV2World.h"
#include "platform/foundation/Bundle.h"

namespace orvalo {

std::shared_ptr<AUAudioUnit> makeBridgedAudioUnit(const std::string& uri,
                                                  const AudioComponentDescription& description) {
    return std::make_shared<BridgedAudioUnit>(LV2World::shared(), uri, description,
                                              Bundle::main()->helperURL("effect-service").path());
}

}  // namespace orvalo
