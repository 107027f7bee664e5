#include "platform/audio/unit/AudioComponentDescription.h"

namespace orvalo {

std::string description(const AudioComponentDescription& record) {
    return "AudioComponentDescription(componentType: " + std::to_string(record.componentType) +
           ", componentSubType: " + std::to_string(record.componentSubType) +
           ", componentManufacturer: " + std::to_string(record.componentManufacturer) +
           ", componentFlags: " + std::to_string(record.componentFlags) +
           ", componentFlagsMask: " + std::to_string(record.componentFlagsMask) + ")";
}

}  // namespace orvalo
