#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/audio/bridge/host/BridgeLimits.h"
#include "platform/audio/bridge/host/BridgedRender.h"
#include "platform/audio/bridge/host/PluginUIChannel.h"
#include "platform/audio/bridge/host/ServiceSupervisor.h"
#include "platform/audio/lv2/LV2AudioUnit.h"
#include "platform/audio/lv2/LV2StatePaths.h"

namespace orvalo {

/// An LV2 plug-in in an effect service, whose crash cannot take the host down. The output is dry
/// while the service is late, has ended, or restarts. When the service dies while it loads a
/// preset, that preset is not loaded. The host reads the plug-in's data and never loads its code.
class BridgedAudioUnit : public LV2AudioUnit {
  public:
    /// Starts the service and waits until the plug-in is instantiated there. program: the path of
    /// effect-service. writable: folders that the plug-in may change. Throws NSError as
    /// LV2LocalAudioUnit does, and when the service cannot be started or dies too often before the
    /// plug-in is instantiated. The world must outlive the unit.
    BridgedAudioUnit(LV2World& world, const std::string& uri,
                     const AudioComponentDescription& description,
                     const std::filesystem::path& program, const BridgeLimits& limits = {},
                     std::vector<std::filesystem::path> writable = {});

    void requestViewController(
        std::function<void(std::shared_ptr<UIViewController>)> completion) override;
    std::uint32_t latency() const override { return render_.latency(); }
    void setRenderingOffline(bool isOffline) override { render_.setOffline(isOffline); }
    void allocateRenderResources(double sampleRate) override;
    void render(const AudioBlock& input, const AudioBlock& output) noexcept override {
        render_.render(input, output);
    }

    /// How many quanta were dry because the service was late. Any thread.
    std::uint64_t lateQuantumCount() const { return render_.lateQuantumCount(); }

    /// The connection to the UI; valid while the unit lives.
    PluginUIChannel& pluginUIChannel() { return *pluginUIChannel_; }

  private:
    void applyContextName(const std::string& name) override;
    bool loadPreset(const LV2Preset& preset) override;
    ServiceOrder order(const std::filesystem::path& program,
                       std::vector<std::filesystem::path> writable);

    LV2StatePaths paths_;
    double sampleRate_ = 0.0;
    BridgedRender render_;
    const std::shared_ptr<PluginUIChannel> pluginUIChannel_;
    ServiceSupervisor supervisor_;  // Destroyed before the members that it uses.
};

}  // namespace orvalo
