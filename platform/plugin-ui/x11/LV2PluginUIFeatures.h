#pragma once

#include <lv2/core/lv2.h>
#include <lv2/data-access/data-access.h>
#include <lv2/ui/ui.h>

#include <array>
#include <functional>
#include <string>

#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/audio/lv2/LV2Log.h"
#include "platform/plugin-ui/x11/LV2PluginUIOptions.h"
#include "platform/plugin-ui/x11/X11Geometry.h"

namespace orvalo {

/// What the host offers to a UI, beside what suil adds from the host's functions (portMap,
/// portSubscribe, touch). Must outlive the UI, as what it is made of.
class LV2PluginUIFeatures {
  public:
    /// onResize: what the UI asks for, in pixels; may be called while it is made.
    LV2PluginUIFeatures(LV2PluginUIOptions& options, LV2Log& log, unsigned long parent,
                        const LV2LocalAudioUnit::InstanceAccess& instance,
                        std::function<void(X11Size)> onResize);
    LV2PluginUIFeatures(const LV2PluginUIFeatures&) = delete;
    LV2PluginUIFeatures& operator=(const LV2PluginUIFeatures&) = delete;

    /// Ends with null.
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
    std::array<const LV2_Feature*, 11> features_;
};

}  // namespace orvalo
