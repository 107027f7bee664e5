#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/audio/bridge/host/BridgeLimits.h"
#include "platform/audio/bridge/host/BridgedRender.h"
#include "platform/audio/bridge/host/PluginUIChannel.h"
#include "platform/audio/bridge/host/ServiceSupervisor.h"
#include "platform/audio/lv2/LV2PluginData.h"
#include "platform/audio/lv2/LV2Presets.h"
#include "platform/audio/lv2/LV2StatePaths.h"
#include "platform/audio/unit/AUAudioUnit.h"

namespace orvalo {

/// An LV2 plug-in in a process of its own, which nothing that it does can take this one with. While
/// the process does not answer in time, is gone, or is being made again, the input passes through,
/// mapped to the output's channels. Here only the plug-in's data are read.
class BridgedAudioUnit : public AUAudioUnit {
  public:
    /// program: the effect service's. Throws NSError as makeLV2AudioUnit() does. The world must
    /// outlive the unit.
    BridgedAudioUnit(LV2World& world, const std::string& uri,
                     const AudioComponentDescription& description,
                     const std::filesystem::path& program, const BridgeLimits& limits = {});

    AudioComponentDescription componentDescription() const override { return description_; }
    std::string contextName() const override;
    void setContextName(const std::string& name) override;
    std::vector<std::shared_ptr<AUAudioUnitPreset>> factoryPresets() const override;
    std::shared_ptr<AUAudioUnitPreset> currentPreset() const override;
    /// As AUAudioUnit's; a preset during which the process dies is not loaded.
    void setCurrentPreset(const std::shared_ptr<AUAudioUnitPreset>& preset) override;
    std::vector<std::string> MIDIOutputNames() const override { return data_.midiOutputNames; }
    AUMIDIOutputEventBlock MIDIOutputEventBlock() const override;
    void setMIDIOutputEventBlock(AUMIDIOutputEventBlock block) override;
    void requestViewController(
        std::function<void(std::shared_ptr<UIViewController>)> completion) override;
    std::uint32_t inputChannelCount() const override { return data_.inputChannelCount; }
    std::uint32_t outputChannelCount() const override { return data_.outputChannelCount; }
    std::uint32_t latency() const override { return render_.latency(); }
    void setRenderingOffline(bool isOffline) override { render_.setOffline(isOffline); }
    void allocateRenderResources(double sampleRate) override;
    void render(const AudioBlock& input, const AudioBlock& output) noexcept override {
        render_.render(input, output);
    }

    /// How many quanta passed through because their answer came too late. Any thread.
    std::uint64_t lateQuantumCount() const { return render_.lateQuantumCount(); }

    /// What its data say.
    const LV2PluginData& data() const { return data_; }
    LV2World& world() const { return world_; }
    /// The connection to its UI, as long as the unit lives.
    PluginUIChannel& pluginUIChannel() { return *pluginUIChannel_; }

    /// Makes the view controller of a unit's UI, on the main thread; null, with a line on standard
    /// error that says why, when the plug-in has no UI that can be shown.
    using PluginUIProvider =
        std::function<std::shared_ptr<UIViewController>(const std::shared_ptr<BridgedAudioUnit>&)>;
    /// Sets the provider of all units, before the first request; empty at first: no unit has a UI.
    static void setPluginUIProvider(PluginUIProvider provider);

  private:
    BridgedAudioUnit(LV2World& world, LV2PluginData data,
                     const AudioComponentDescription& description,
                     const std::filesystem::path& program, const BridgeLimits& limits);

    ServiceOrder order(const std::filesystem::path& program);
    const std::vector<LV2Preset>& presets() const;

    LV2World& world_;
    const LV2PluginData data_;
    const AudioComponentDescription description_;
    mutable std::mutex control_;  // One control operation at a time; never the render thread.
    LV2StatePaths paths_;
    std::string contextName_;
    double sampleRate_ = 0.0;
    mutable std::optional<std::vector<LV2Preset>> presets_;  // Once somebody asked for them.
    std::shared_ptr<AUAudioUnitPreset> currentPreset_;
    BridgedRender render_;
    const std::shared_ptr<PluginUIChannel> pluginUIChannel_;
    ServiceSupervisor supervisor_;  // Ends before what it works for.
};

}  // namespace orvalo
