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

namespace orvalo {

/// What a unit begins with, where that is not what its plug-in has by itself.
struct LV2UnitStart {
    std::string contextName{};
    double sampleRate = 0.0;              ///< Hz; 0 for the rate that a plug-in is tried with.
    std::filesystem::path filesFolder{};  ///< As LV2StatePaths takes it.
    /// stateProperties() of such a unit; absent for the default.
    std::optional<LV2StateProperties> state{};
};

/// An LV2 plug-in in this process. The plug-in's run() never overlaps the setting of a context name
/// nor, unless the plug-in allows that, the loading of a preset: the output is dry meanwhile.
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

    /// The values of its control ports.
    LV2Controls& controls() { return parts_.controls; }
    double sampleRate() const;

    /// Whether the plug-in keeps state beside its control values.
    bool keepsState() const;
    /// That state now, from which another unit of the plug-in can start. May run beside render().
    /// Throws NSError.
    LV2StateProperties stateProperties() const;

    /// An open UI's way to the unit's instance.
    struct InstanceAccess {
        LV2_Handle handle;
        const LV2_Descriptor* descriptor;
        std::uint32_t number;  ///< As instanceNumber().
    };
    /// Opens a UI's side: its events travel by the link from now on, and instances stay,
    /// inactive, when they are replaced, until the last UI has left. Waits for at most the
    /// render call that is under way. Off the render thread.
    InstanceAccess connectPluginUI(const std::shared_ptr<LV2EventLink>& link);
    /// Ends what connectPluginUI() began with that link.
    void disconnectPluginUI(const std::shared_ptr<LV2EventLink>& link);
    /// How often the instance has been replaced. Any thread.
    std::uint32_t instanceNumber() const { return instanceNumber_.load(std::memory_order_acquire); }

    /// Makes the view controller of a unit's UI, on the main thread; null, with a line on standard
    /// error that says why, when the plug-in has no UI that can be shown.
    using PluginUIProvider =
        std::function<std::shared_ptr<UIViewController>(const std::shared_ptr<LV2LocalAudioUnit>&)>;
    /// Sets the provider of all units, before the first request; empty at first: no unit has a UI.
    static void setPluginUIProvider(PluginUIProvider provider);

  private:
    void applyContextName(const std::string& name) override;
    bool loadPreset(const LV2Preset& preset) override;
    void setLinks(LV2EventLinks links);
    void restore(const LilvState& state);
    void whileNotRunning(const std::function<void(LV2Instance&)>& work);

    LV2UnitParts parts_;
    RenderSlot<LV2Instance> instance_;
    RenderSlot<LV2EventLinks> links_;  // Null without an open UI.
    // Replaced ones that an open UI may still reach.
    std::vector<std::unique_ptr<LV2Instance>> retired_;
    std::atomic<std::uint32_t> instanceNumber_{0};
    std::int64_t sampleTime_ = 0;  // The render thread's: frames rendered so far.
    std::atomic<std::uint32_t> latency_{0};
};

}  // namespace orvalo
