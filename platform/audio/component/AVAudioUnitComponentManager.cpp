#include "platform/audio/component/AVAudioUnitComponentManager.h"

#include <glib.h>

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
    auto withoutFlags = matchingDescription;
    withoutFlags.componentFlags = 0;
    const bool isOneEffect = withoutFlags.componentType != 0 &&
                             withoutFlags.componentSubType != 0 &&
                             withoutFlags.componentManufacturer != 0;
    std::vector<std::shared_ptr<AVAudioUnitComponent>> known;
    {
        const std::scoped_lock lock(mutex_);
        known = components_;
    }
    std::vector<std::shared_ptr<AVAudioUnitComponent>> result;
    for (const auto& component : known) {
        const auto& stated = component->audioComponentDescription;
        if (matches(stated, matchingDescription)) {
            result.push_back(component);
        } else if (isOneEffect && matches(stated, withoutFlags)) {
            sayPassedOver(*component, matchingDescription.componentFlags);
        }
    }
    return result;
}

void AVAudioUnitComponentManager::readAgain() {
    auto& world = LV2World::shared();
    world.forgetManifests();
    auto components = world.components();
    const std::scoped_lock lock(mutex_);
    components_ = std::move(components);
}

void AVAudioUnitComponentManager::sayPassedOver(const AVAudioUnitComponent& component,
                                                std::uint32_t wantedFlags) const {
    {
        const std::scoped_lock lock(mutex_);
        if (!passedOver_.insert(component.uri).second) {
            return;
        }
    }
    g_warning("The effect <%s> is passed over: %s states its flags as %u instead of %u.",
              component.uri.c_str(), LV2World::shared().codesBundleOf(component.uri).c_str(),
              component.audioComponentDescription.componentFlags, wantedFlags);
}

}  // namespace orvalo
