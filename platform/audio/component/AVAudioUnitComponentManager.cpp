#include "platform/audio/component/AVAudioUnitComponentManager.h"

#include <algorithm>

#include "platform/audio/lv2/LV2World.h"

namespace orvalo {

namespace {

bool matches(const AudioComponentDescription& component, const AudioComponentDescription& key) {
    const auto agrees = [](std::uint32_t field, std::uint32_t wanted) {
        return wanted == 0 || field == wanted;
    };
    return agrees(component.componentType, key.componentType) &&
           agrees(component.componentSubType, key.componentSubType) &&
           agrees(component.componentManufacturer, key.componentManufacturer) &&
           agrees(component.componentFlags, key.componentFlags) &&
           agrees(component.componentFlagsMask, key.componentFlagsMask);
}

}  // namespace

const std::shared_ptr<AVAudioUnitComponentManager>&
AVAudioUnitComponentManager::sharedAudioUnitComponentManager() {
    // Never destroyed: the search for the effect may still use it while the process ends.
    static const auto& manager =
        *new const std::shared_ptr<AVAudioUnitComponentManager>(new AVAudioUnitComponentManager);
    return manager;
}

AVAudioUnitComponentManager::AVAudioUnitComponentManager()
    : components_(LV2World::shared().components()) {}

std::vector<std::shared_ptr<AVAudioUnitComponent>> AVAudioUnitComponentManager::components(
    const AudioComponentDescription& matchingDescription) const {
    std::vector<std::shared_ptr<AVAudioUnitComponent>> result;
    std::copy_if(components_.begin(), components_.end(), std::back_inserter(result),
                 [&matchingDescription](const auto& component) {
                     return matches(component->audioComponentDescription, matchingDescription);
                 });
    return result;
}

}  // namespace orvalo
