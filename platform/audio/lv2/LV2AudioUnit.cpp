#include "platform/audio/lv2/LV2AudioUnit.h"

#include <utility>

namespace orvalo {

namespace {

// Never destroyed: an effect may be instantiated while the process ends.

LV2AudioUnit::PluginUIProvider& provider() {
    static auto& provider = *new LV2AudioUnit::PluginUIProvider;
    return provider;
}

LV2AudioUnit::PluginUIProvider& substituteProvider() {
    static auto& provider = *new LV2AudioUnit::PluginUIProvider;
    return provider;
}

}  // namespace

LV2AudioUnit::LV2AudioUnit(LV2World& world, const std::string& uri,
                           const AudioComponentDescription& description, std::string contextName)
    : contextName_(std::move(contextName)),
      world_(world),
      data_(LV2PluginData::read(LV2World::Access(world), uri)),
      description_(description) {}

std::string LV2AudioUnit::contextName() const {
    const std::scoped_lock lock(control_);
    return contextName_;
}

void LV2AudioUnit::setContextName(const std::string& name) {
    const std::scoped_lock lock(control_);
    contextName_ = name;
    applyContextName(name);
}

std::vector<std::shared_ptr<AUAudioUnitPreset>> LV2AudioUnit::factoryPresets() const {
    std::vector<std::shared_ptr<AUAudioUnitPreset>> result;
    for (const auto& preset : presets()) {
        const auto number = static_cast<std::int64_t>(result.size());
        result.push_back(std::make_shared<AUAudioUnitPreset>(number, preset.label));
    }
    return result;
}

std::shared_ptr<AUAudioUnitPreset> LV2AudioUnit::currentPreset() const {
    const std::scoped_lock lock(control_);
    return currentPreset_;
}

void LV2AudioUnit::setCurrentPreset(const std::shared_ptr<AUAudioUnitPreset>& preset) {
    const std::scoped_lock lock(control_);
    currentPreset_ = nullptr;
    const auto count = static_cast<std::int64_t>(presets().size());
    if (preset != nullptr && preset->number >= 0 && preset->number < count &&
        loadPreset(presets()[static_cast<std::size_t>(preset->number)])) {
        currentPreset_ = preset;
    }
}

AUMIDIOutputEventBlock LV2AudioUnit::MIDIOutputEventBlock() const {
    const std::scoped_lock lock(control_);
    const auto* block = midiBlock_.current();
    return block == nullptr ? AUMIDIOutputEventBlock() : *block;
}

void LV2AudioUnit::setMIDIOutputEventBlock(AUMIDIOutputEventBlock block) {
    const std::scoped_lock lock(control_);
    midiBlock_.exchange(block ? std::make_unique<AUMIDIOutputEventBlock>(std::move(block))
                              : nullptr);
}

const std::vector<LV2Preset>& LV2AudioUnit::presets() const {
    std::call_once(presetsRead_, [this] { presets_ = findPresets(world_, data_.uri); });
    return presets_;
}

void LV2AudioUnit::setPluginUIProvider(PluginUIProvider newProvider, PluginUIProvider substitute) {
    provider() = std::move(newProvider);
    substituteProvider() = std::move(substitute);
}

const LV2AudioUnit::PluginUIProvider& LV2AudioUnit::substituteUIProvider() {
    return substituteProvider();
}

const LV2AudioUnit::PluginUIProvider& LV2AudioUnit::pluginUIProvider() {
    return provider();
}

}  // namespace orvalo
