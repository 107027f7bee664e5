#include "platform/audio/lv2/LV2Registry.h"

#include "platform/audio/lv2/LV2World.h"

namespace orvalo {

std::vector<LV2Component> registeredLV2Components() {
    return LV2World::shared().components();
}

}  // namespace orvalo
