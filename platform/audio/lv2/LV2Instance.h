#pragma once

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
#include "platform/audio/lv2/LV2StateProperty.h"
#include "platform/audio/lv2/LV2Worker.h"
#include "platform/audio/lv2/LV2World.h"

namespace orvalo {

/// What the instances of one unit share.
struct LV2UnitParts {
    LV2UnitParts(LV2World& lv2World, const LV2PluginData& pluginData,
                 std::filesystem::path filesFolder)
        : world(lv2World),
          data(pluginData),
          log(data.uri),
          paths(std::move(filesFolder)),
          controls(data.ports) {}

    LV2World& world;
    const LV2PluginData& data;
    LV2Log log;
    LV2StatePaths paths;
    LV2Controls controls;
};

/// One instance of a plug-in at one sample rate, with all that it needs. Control operations are off
/// the render thread and never during an LV2World::Access of the caller's.
class LV2Instance {
  public:
    /// Makes it; not active yet. Throws NSError.
    LV2Instance(LV2UnitParts& parts, double sampleRate, const std::string& contextName);
    /// Ends its worker, and it. It must not run any more.
    ~LV2Instance();
    LV2Instance(const LV2Instance&) = delete;
    LV2Instance& operator=(const LV2Instance&) = delete;

    double sampleRate() const { return sampleRate_; }
    /// The plug-in's own handle and descriptor, which a UI may ask for.
    LV2_Handle handle() const { return lilv_instance_get_handle(instance_.get()); }
    const LV2_Descriptor* descriptor() const {
        return lilv_instance_get_descriptor(instance_.get());
    }
    /// For the render thread, after activate().
    LV2Process& process() { return *process_; }

    void activate();
    /// It must not run any more.
    void deactivate();

    /// Whether it keeps state beside its control values.
    bool keepsState() const;
    /// Its state now. Throws NSError.
    LV2State save() const;
    /// Sets its state: not while it runs, but for plug-ins with threadSafeRestore.
    void restore(const LilvState& state);
    /// What it keeps beside its control values, and the way back, as above.
    LV2StateProperties saveProperties() const;
    void restore(const LV2StateProperties& properties);
    /// Whether it can be told options later.
    bool takesOptions() const;
    /// Tells it the context's name, if it takes options: not while it runs.
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
