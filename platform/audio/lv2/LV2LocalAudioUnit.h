#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/audio/lv2/LV2AudioUnit.h"
#include "platform/audio/lv2/LV2EventLink.h"
#include "platform/audio/lv2/LV2Instance.h"
#include "platform/audio/signal/RenderSlot.h"
#include "platform/audio/unit/ExpectedRendering.h"

namespace orvalo {

/// The initial values of a unit, where they differ from the plug-in's defaults.
struct LV2UnitStart {
    std::string contextName{};
    ExpectedRendering rendering{};
    std::filesystem::path filesFolder{};  ///< As for LV2StatePaths.
    /// stateProperties() of an earlier unit; absent for the default.
    std::optional<LV2StateProperties> state{};
};

/// An LV2 plug-in in this process. The plug-in's run() never overlaps the setting of a context name
/// nor, unless the plug-in allows that, the loading of a preset; the output is dry during both.
class LV2LocalAudioUnit : public LV2AudioUnit {
  public:
    /// Instantiates the plug-in. Throws NSError that names the plug-in and what is wrong with it:
    /// unknown, a required feature that the host lacks, unsupported ports, a library that does not
    /// load. The world must outlive the unit.
    LV2LocalAudioUnit(LV2World& world, const std::string& uri,
                      const AudioComponentDescription& description, const LV2UnitStart& start = {});

    void requestViewController(
        std::function<void(std::shared_ptr<UIViewController>)> completion) override;
    std::uint32_t latency() const override { return latency_.load(std::memory_order_relaxed); }
    void allocateRenderResources(double sampleRate) override;
    void render(const AudioBlock& input, const AudioBlock& output) noexcept override;

    /// As render(), without a line in the log: whether samples were NaN or infinite and are now 0.
    bool renderAndSilence(const AudioBlock& input, const AudioBlock& output) noexcept;
    /// The line's text behind the plug-in's URI.
    static constexpr auto kSilenced =
        "it delivers samples that are no finite numbers; they are silenced";

    /// The values of the plug-in's control ports.
    LV2Controls& controls() { return parts_.controls; }
    double sampleRate() const;

    /// Whether the plug-in keeps state besides its control values.
    bool keepsState() const;
    /// Whether the plug-in has rendered since it was instantiated. Many plug-ins take up a restored
    /// state in their first run() only and would save an older one before.
    bool hasRun() const;
    /// The state besides the control values, from which another unit of the plug-in can start. May
    /// be called during render(). Throws NSError.
    LV2StateProperties stateProperties() const;

    /// The instance as an open UI accesses it.
    struct InstanceAccess {
        LV2_Handle handle;
        const LV2_Descriptor* descriptor;
        std::uint32_t number;  ///< As instanceNumber().
    };
    /// Connects an open UI: its events pass through the link from now on, and a replaced instance
    /// stays, inactive, until the last UI is disconnected. Waits at most for the current render
    /// call. Off the render thread.
    InstanceAccess connectPluginUI(const std::shared_ptr<LV2EventLink>& link);
    /// Disconnects the UI of that link.
    void disconnectPluginUI(const std::shared_ptr<LV2EventLink>& link);
    /// How often the instance has been replaced. Any thread.
    std::uint32_t instanceNumber() const { return instanceNumber_.load(std::memory_order_acquire); }

  private:
    void applyContextName(const std::string& name) override;
    bool loadPreset(const LV2Preset& preset) override;
    void setLinks(LV2EventLinks links);
    void restore(const LilvState& state);
    void whileNotRunning(const std::function<void(LV2Instance&)>& work);

    /// What an instance is made from, in the order of restoring; absent parts are not restored.
    struct Origin {
        std::optional<LV2StateProperties> properties{};
        LV2State state{};
        LV2State preset{};

        void restore(LV2Instance& instance) const;
    };

    LV2UnitParts parts_;
    Origin origin_;  // Of the current instance.
    RenderSlot<LV2Instance> instance_;
    RenderSlot<LV2EventLinks> links_;  // Null without an open UI.
    // Replaced instances that an open UI may still access.
    std::vector<std::unique_ptr<LV2Instance>> retired_;
    std::atomic<std::uint32_t> instanceNumber_{0};
    std::int64_t sampleTime_ = 0;  // The render thread's: frames rendered so far.
    std::atomic<std::uint32_t> latency_{0};
    bool hasWarned_ = false;  // The render thread's: of samples that are not finite.
};

}  // namespace orvalo
