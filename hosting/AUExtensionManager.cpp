#include "hosting/AUExtensionManager.h"

#include <array>
#include <cstdio>
#include <utility>

#include "platform/audio/component/AVAudioUnitComponentManager.h"
#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/Print.h"
#include "platform/foundation/ProcessInfo.h"
#include "support/FourCharCode.h"
#include "support/Unwrapped.h"

namespace orvalo {

AUExtensionManager::AUExtensionManager(std::shared_ptr<AUExtensionManagerDelegate> owner,
                                       std::shared_ptr<AUEnginePlayer> engine,
                                       std::function<void()> noEffectHandler)
    : auEngine(std::move(engine)),
      delegate(std::move(owner)),
      onNoEffect(std::move(noEffectHandler)) {}

std::shared_ptr<AUExtensionManager> AUExtensionManager::init(
    std::shared_ptr<AUExtensionManagerDelegate> delegate, std::shared_ptr<AUEnginePlayer> engine,
    std::function<void()> onNoEffect) {
    // Not in the constructor: the search needs a shared reference to the manager.
    std::shared_ptr<AUExtensionManager> manager(
        new AUExtensionManager(std::move(delegate), std::move(engine), std::move(onNoEffect)));
    manager->loadForRelease();
    return manager;
}

std::vector<Preset> AUExtensionManager::presets() const {
    std::vector<Preset> result;
    if (audioUnit) {
        for (const auto& preset : audioUnit->factoryPresets()) {
            result.emplace_back(preset);
        }
    }
    return result;
}

std::optional<Preset> AUExtensionManager::currentPreset() const {
    const auto current = audioUnit ? audioUnit->currentPreset() : nullptr;
    return current ? std::optional<Preset>(current) : std::nullopt;
}

void AUExtensionManager::setCurrentPreset(const std::optional<Preset>& preset) {
    if (audioUnit) {
        audioUnit->setCurrentPreset(preset ? preset->audioUnitPreset : nullptr);
    }
}

void AUExtensionManager::loadForRelease() {
    print("NOTE: WE ARE IN AUDIO UNIT RELEASE MODE. ENSURE THE STORYBOARD CONNECTIONS ARE VALID!");
    DispatchQueue::global()->async([self = shared(this)] { self->search(); });
}

void AUExtensionManager::search() {
    _availableAudioUnits =
        AVAudioUnitComponentManager::sharedAudioUnitComponentManager()->components(
            componentDescription);
    if (_availableAudioUnits.empty()) {
        print("ERROR: There were no audio units found.");
        reportNoEffect();
        return;
    }
    selectfoundComponent(_availableAudioUnits.front(),
                         [self = shared(this)] { self->onFoundComponent(); });
}

void AUExtensionManager::reportNoEffect() const {
    if (onNoEffect) {
        onNoEffect();
    }
}

void AUExtensionManager::selectfoundComponent(
    const std::shared_ptr<AVAudioUnitComponent>& component,
    std::function<void()> completionHandler) {
    if (!component) {
        print("ERROR: Component is nil.");
        return;
    }
    print("AUExtensionManager: Loaded component has following properties.");
    log(component->audioComponentDescription);
    selectAudioUnitWithComponentDescription(component->audioComponentDescription,
                                            std::move(completionHandler));
}

void AUExtensionManager::log(const AudioComponentDescription& description) {
    const auto& process = ProcessInfo::processInfo();
    print("\nProcess Name: " + process.processName() +
          " PID: " + std::to_string(process.processIdentifier()) + "\n");

    std::array<char, sizeof "0x00000000"> flags{};
    std::snprintf(flags.data(), flags.size(), "%#010x", description.componentFlags);
    print("AUExtension (\ntype: " + stringValue(description.componentType) +
          "\nsubtype: " + stringValue(description.componentSubType) + "\nmanufacturer: " +
          stringValue(description.componentManufacturer) + "\nflags: " + flags.data() + "\n)");
}

void AUExtensionManager::selectAudioUnitWithComponentDescription(
    const std::optional<AudioComponentDescription>& description,
    std::function<void()> completionHandler) {
    if (!description) {
        print("Error: Component description is nil.");
        return;
    }
    AVAudioUnit::instantiate(
        *description, AudioComponentInstantiationOptions::none,
        [self = shared(this), record = *description, completion = std::move(completionHandler)](
            const std::shared_ptr<AVAudioUnit>& unit, const std::optional<NSError>&) {
            if (!unit) {
                print(orvalo::description(record));
                print("Error: Could not instantiate audio unit.");
                self->reportNoEffect();
                return;
            }
            self->adopt(unit, completion);
        });
}

void AUExtensionManager::adopt(const std::shared_ptr<AVAudioUnit>& unit,
                               const std::function<void()>& completionHandler) {
    print("AUExtensionManager: Audio unit was found, making connections now ...");
    unit->auAudioUnit()->setContextName(orvaloContextName);
    auEngine->connect(unit, [this, &unit, &completionHandler] {
        print("AUExtensionManager: Performed audio unit connection.");
        unwrapped(delegate).onFoundComponent(unit);
        completionHandler();
    });
}

void AUExtensionManager::onFoundComponent() {
    connectParametersToControls();
    if (delegate) {
        delegate->onEngineInitialized();
    }
}

void AUExtensionManager::connectParametersToControls() {
    if (!audioUnit) {
        print("WARNING: Audio unit is nil (yet?).");
    }
}

void AUExtensionManager::searchAgain() {
    DispatchQueue::global()->async([self = shared(this)] {
        AVAudioUnitComponentManager::sharedAudioUnitComponentManager()->readAgain();
        self->search();
    });
}

bool AUExtensionManager::togglePlayback() {
    return auEngine->toggle();
}

void AUExtensionManager::cleanup() {
    auEngine->finalize();
}

}  // namespace orvalo
