#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include "platform/audio/lv2/LV2Controls.h"
#include "platform/audio/lv2/LV2Features.h"
#include "platform/audio/lv2/LV2Log.h"
#include "platform/audio/lv2/LV2Options.h"
#include "platform/audio/lv2/LV2PluginData.h"
#include "platform/audio/lv2/LV2Process.h"
#include "platform/audio/lv2/LV2State.h"
#include "platform/audio/lv2/LV2StatePaths.h"
#include "platform/audio/lv2/LV2Worker.h"
#include "platform/audio/lv2/LV2World.h"

namespace orvalo {

/// What the successive instances of one effect share.
struct LV2UnitParts {
    LV2UnitParts(LV2World& lv2World, const LV2PluginData& pluginData,
                 std::filesystem::path filesFolder, std::uint32_t quantumFrameCount)
        : world(lv2World),
          data(pluginData),
          log(data.uri),
          paths(std::move(filesFolder)),
          controls(data.ports),
          quantum(quantumFrameCount) {}

    LV2World& world;
    const LV2PluginData& data;
    LV2Log log;
    LV2StatePaths paths;
    LV2Controls controls;
    const std::uint32_t quantum;  ///< Frames; 0 where quanta differ.
};

/// One instance of a plug-in at one sample rate, with its features and worker. Off the render
/// thread, except process(); the caller must not hold an LV2World::Access.
class LV2Instance {
  public:
    /// Creates an inactive instance. Throws NSError.
    LV2Instance(LV2UnitParts& parts, double sampleRate, const std::string& contextName);
    /// Calls deactivate(). The instance must not be rendering.
    ~LV2Instance();
    LV2Instance(const LV2Instance&) = delete;
    LV2Instance& operator=(const LV2Instance&) = delete;

    double sampleRate() const { return sampleRate_; }
    /// The plug-in's own handle and descriptor, for UIs with instance access.
    LV2_Handle handle() const { return lilv_instance_get_handle(instance_.get()); }
    const LV2_Descriptor* descriptor() const {
        return lilv_instance_get_descriptor(instance_.get());
    }
    /// For the render thread, after activate().
    LV2Process& process() { return *process_; }
    /// Whether it has rendered a quantum.
    bool hasRun() const { return process_->hasRun(); }

    /// Activates the instance, after which it may render. Once.
    void activate();
    /// Stops the worker and deactivates the instance, which must not be rendering.
    void deactivate();

    /// Whether it has state besides its control values.
    bool keepsState() const;
    /// The current state with control values. Throws NSError.
    LV2State save() const;
    /// Restores a state. Not while it renders, unless the plug-in has threadSafeRestore.
    void restore(const LilvState& state);
    /// The state besides its control values. Threads and errors as above.
    LV2StateProperties saveProperties() const;
    void restore(const LV2StateProperties& properties);
    /// Whether options can be set after instantiation.
    bool takesOptions() const;
    /// Sets the context name, if takesOptions(). Not while it renders.
    void setContextName(const std::string& name);

  private:
    LV2UnitParts& parts_;
    const double sampleRate_;
    LV2Options options_;
    LV2Worker worker_;
    LV2Features features_;
    LilvPointer<LilvInstance> instance_;
    std::unique_ptr<LV2Process> process_;
    bool isActive_ = false;
};

}  // namespace orvalo
