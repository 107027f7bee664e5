#pragma once

#include <lv2/core/lv2.h>
#include <lv2/data-access/data-access.h>
#include <lv2/ui/ui.h>

#include <array>
#include <functional>
#include <string>

#include "platform/audio/interface/LV2InterfaceOptions.h"
#include "platform/audio/interface/X11Geometry.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/audio/lv2/LV2Log.h"

namespace orvalo {

/// What the host offers to an interface, beside what suil adds from the host's functions (portMap,
/// portSubscribe, touch). Must outlive the interface, as what it is made of.
class LV2InterfaceFeatures {
  public:
    /// onResize: what the interface asks for, in pixels; may be called while it is made.
    LV2InterfaceFeatures(LV2InterfaceOptions& options, LV2Log& log, unsigned long parent,
                         const LV2LocalAudioUnit::InstanceAccess& instance,
                         std::function<void(X11Size)> onResize);
    LV2InterfaceFeatures(const LV2InterfaceFeatures&) = delete;
    LV2InterfaceFeatures& operator=(const LV2InterfaceFeatures&) = delete;

    /// Ends with null.
    const LV2_Feature* const* features() const { return features_.data(); }

    /// Whether an interface may require the feature of that URI.
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
