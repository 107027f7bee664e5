#pragma once

#include <condition_variable>
#include <cstdint>
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
#include "platform/audio/lv2/LV2AudioUnit.h"
#include "platform/audio/lv2/LV2FullState.h"
#include "platform/audio/lv2/LV2StatePaths.h"
#include "platform/audio/unit/ExpectedRendering.h"

namespace orvalo {

/// An LV2 plug-in in an effect service, whose crash cannot take the host down. The output is dry
/// while the service is late, has ended, or restarts. When the service dies while it loads a
/// preset, that preset is not loaded. The host reads the plug-in's data and never loads its code.
class BridgedAudioUnit : public LV2AudioUnit {
  public:
    /// Starts the service and waits until the plug-in is instantiated there. program: the path of
    /// effect-service. writable: folders that the plug-in may change. writesPresets: whether
    /// the host writes the presets that the plug-in's UI saves. Throws NSError as
    /// LV2LocalAudioUnit does, and when the service cannot be started or dies too often before the
    /// plug-in is instantiated. The world must outlive the unit.
    BridgedAudioUnit(LV2World& world, const std::string& uri,
                     const AudioComponentDescription& description,
                     const std::filesystem::path& program, const BridgeLimits& limits = {},
                     const ExpectedRendering& rendering = {},
                     std::vector<std::filesystem::path> writable = {}, bool writesPresets = false,
                     const LV2FullState& start = {});

    /// What another unit of the plug-in can start from; absent when the effect is given up or its
    /// service does not answer within a second. Blocks. Any thread.
    std::optional<LV2FullState> fullState();

    void requestViewController(
        std::function<void(std::shared_ptr<UIViewController>)> completion) override;
    std::uint32_t latency() const override { return render_.latency(); }
    std::uint32_t latencyAfterSpan(std::uint32_t span) const override {
        return render_.latencyAfterSpan(span);
    }
    std::uint32_t maximumFramesToRender() const override { return render_.maximumFrames(); }
    void setRenderingOffline(bool isOffline) override { render_.setOffline(isOffline); }
    void playbackStarts() override { startAgain(); }
    /// Also starts a service that was given up. Waits at most BridgeLimits::prepare for the
    /// service, then leaves the output dry until it is prepared; offline it waits until then.
    void allocateRenderResources(double sampleRate) override;
    void render(const AudioBlock& input, const AudioBlock& output) noexcept override {
        render_.render(input, output);
    }

    /// Starts the service again when it was given up. Any thread.
    void startAgain();

    /// How many quanta were dry because the service was late. Any thread.
    std::uint64_t lateQuantumCount() const { return render_.lateQuantumCount(); }

    /// The connection to the UI; valid while the unit lives.
    PluginUIChannel& pluginUIChannel() { return *pluginUIChannel_; }

  private:
    void applyContextName(const std::string& name) override;
    bool loadPreset(const LV2Preset& preset) override;
    LastState firstState(double sampleRate, const LV2FullState& start) const;
    ServiceOrder order(const std::filesystem::path& program, std::uint32_t quantum,
                       std::vector<std::filesystem::path> writable, bool writesPresets);

    /// A request for a sample rate.
    struct Preparation {
        double sampleRate = 0.0;
        bool isAwaited = false;  ///< A thread waits for the answer and handles it.
        std::optional<ServiceAnswer> answer;
    };
    std::shared_ptr<Preparation> requestSampleRate(double sampleRate, bool isAwaited);
    void finish(Preparation& preparation, const ServiceAnswer& answer);
    /// Whether the service already has that rate and no other one is requested.
    bool hasSampleRate(double sampleRate);

    const BridgeLimits limits_;
    LV2StatePaths paths_;
    std::mutex rates_;                          // Guards the next two members.
    double sampleRate_;                         // Of the service's start, or as it answered last.
    std::shared_ptr<Preparation> preparation_;  // The last one; null before the first.
    std::condition_variable answered_;          // A preparation has its answer.
    BridgedRender render_;
    const std::shared_ptr<PluginUIChannel> pluginUIChannel_;
    ServiceSupervisor supervisor_;  // Destroyed before the members that it uses.
};

}  // namespace orvalo
