#pragma once

#include <lv2/core/lv2.h>
#include <lv2/data-access/data-access.h>
#include <lv2/options/options.h>
#include <lv2/ui/ui.h>

#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/audio/lv2/LV2Log.h"
#include "platform/plugin-ui/x11/LV2PluginUIData.h"
#include "platform/plugin-ui/x11/LV2PresetWriter.h"
#include "platform/plugin-ui/x11/X11Geometry.h"

namespace orvalo {

/// The options that a UI is made with: the sample rate and the rate of updates (Hz), the scale of
/// the screen, the size of the largest sequence buffer (bytes), the window's title and the
/// context's name. Must outlive the UI.
class LV2PluginUIOptions {
  public:
    LV2PluginUIOptions(const LV2LocalAudioUnit& unit, const LV2PluginUIData& data,
                       double scaleFactor);
    LV2PluginUIOptions(const LV2PluginUIOptions&) = delete;
    LV2PluginUIOptions& operator=(const LV2PluginUIOptions&) = delete;

    /// Ends with an option of zeroes.
    LV2_Options_Option* options() { return options_.data(); }

    /// Whether the option of that URI is among them.
    static bool isOffered(const std::string& uri);

  private:
    float sampleRate_;
    float updateRate_;
    float scaleFactor_;
    std::int32_t sequenceSize_;
    std::string windowTitle_;
    std::string contextName_;
    std::array<LV2_Options_Option, 7> options_;
};

/// The features that the host offers a UI. suil adds portMap, portSubscribe and touch. Must outlive
/// the UI, as must its arguments.
class LV2PluginUIFeatures {
  public:
    /// onResize: the UI requests a size, in pixels; also while it is made.
    LV2PluginUIFeatures(LV2PluginUIOptions& options, LV2Log& log, unsigned long parent,
                        const LV2LocalAudioUnit::InstanceAccess& instance,
                        std::function<void(X11Size)> onResize, LV2PresetRequests presets);
    LV2PluginUIFeatures(const LV2PluginUIFeatures&) = delete;
    LV2PluginUIFeatures& operator=(const LV2PluginUIFeatures&) = delete;

    /// Null-terminated.
    const LV2_Feature* const* features() const { return features_.data(); }

    /// Whether a UI may require the feature of that URI.
    static bool isOffered(const std::string& uri);

  private:
    static int resize(LV2UI_Feature_Handle handle, int width, int height);

    const std::function<void(X11Size)> onResize_;
    LV2UI_Resize resizeData_;
    LV2UI_Request_Value requestData_;
    LV2_Extension_Data_Feature dataAccess_;
    LV2_Feature map_;
    LV2_Feature unmap_;
    LV2_Feature options_;
    LV2_Feature log_;
    LV2_Feature parent_;
    LV2_Feature resize_;
    LV2_Feature requestValue_;
    LV2_Feature idle_;
    LV2_Feature instance_;
    LV2_Feature data_;
    const LV2PresetWriter presetWriter_;
    std::array<const LV2_Feature*, 12> features_;
};

}  // namespace orvalo
