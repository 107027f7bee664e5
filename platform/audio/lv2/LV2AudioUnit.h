#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/audio/lv2/LV2PluginData.h"
#include "platform/audio/lv2/LV2Presets.h"
#include "platform/audio/signal/RenderSlot.h"
#include "platform/audio/unit/AUAudioUnit.h"

namespace orvalo {

/// An effect that is an LV2 plug-in, wherever its code runs: the plug-in's data, the context name,
/// the presets and the MIDI handler.
class LV2AudioUnit : public AUAudioUnit {
  public:
    AudioComponentDescription componentDescription() const final { return description_; }
    std::string contextName() const final;
    void setContextName(const std::string& name) final;
    std::vector<std::shared_ptr<AUAudioUnitPreset>> factoryPresets() const final;
    std::shared_ptr<AUAudioUnitPreset> currentPreset() const final;
    void setCurrentPreset(const std::shared_ptr<AUAudioUnitPreset>& preset) final;
    std::vector<std::string> MIDIOutputNames() const final { return data_.midiOutputNames; }
    AUMIDIOutputEventBlock MIDIOutputEventBlock() const final;
    void setMIDIOutputEventBlock(AUMIDIOutputEventBlock block) final;
    std::uint32_t inputChannelCount() const final { return data_.inputChannelCount; }
    std::uint32_t outputChannelCount() const final { return data_.outputChannelCount; }

    const LV2PluginData& data() const { return data_; }
    LV2World& world() const { return world_; }
    /// The factory presets in their order, read at the first call.
    const std::vector<LV2Preset>& presets() const;

    /// Makes the view controller of a unit's UI, on the main thread; null, with a line on standard
    /// error that says why, when the plug-in has no UI that can be shown.
    using PluginUIProvider =
        std::function<std::shared_ptr<UIViewController>(const std::shared_ptr<LV2AudioUnit>&)>;
    /// Sets the provider of all units; call before the first request. Without a provider no unit
    /// has a UI. substitute: makes the view controller when the plug-in's UI was refused before
    /// provider was called; may be empty.
    static void setPluginUIProvider(PluginUIProvider provider, PluginUIProvider substitute = {});
    static const PluginUIProvider& pluginUIProvider();
    static const PluginUIProvider& substituteUIProvider();

  protected:
    /// Reads the plug-in's data; the world must outlive the unit. Throws NSError as
    /// LV2PluginData::read() does.
    LV2AudioUnit(LV2World& world, const std::string& uri,
                 const AudioComponentDescription& description, std::string contextName = {});

    /// Tells the plug-in its context name. control_ is locked.
    virtual void applyContextName(const std::string& name) = 0;
    /// Loads a preset; false, after a warning, when it cannot be loaded. control_ is locked.
    virtual bool loadPreset(const LV2Preset& preset) = 0;

    mutable std::mutex control_;  ///< Serialises control operations; never the render thread's.
    std::string contextName_;
    RenderSlot<AUMIDIOutputEventBlock> midiBlock_;

  private:
    LV2World& world_;
    const LV2PluginData data_;
    const AudioComponentDescription description_;
    mutable std::once_flag presetsRead_;
    mutable std::vector<LV2Preset> presets_;
    std::shared_ptr<AUAudioUnitPreset> currentPreset_;
};

}  // namespace orvalo
