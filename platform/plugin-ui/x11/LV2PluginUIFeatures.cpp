#include "platform/plugin-ui/x11/LV2PluginUIFeatures.h"

#include <lv2/instance-access/instance-access.h>
#include <lv2/log/log.h>
#include <lv2/options/options.h>
#include <lv2/urid/urid.h>

#include <algorithm>
#include <utility>

#include "platform/audio/lv2/LV2Features.h"

namespace orvalo {

LV2PluginUIFeatures::LV2PluginUIFeatures(LV2PluginUIOptions& options, LV2Log& log,
                                         unsigned long parent,
                                         const LV2LocalAudioUnit::InstanceAccess& instance,
                                         std::function<void(X11Size)> onResize)
    : onResize_(std::move(onResize)),
      resizeData_{this, resize},
      // The host has no dialog for parameters that are files.
      requestData_{this,
                   [](LV2UI_Feature_Handle, LV2_URID, LV2_URID, const LV2_Feature* const*) {
                       return LV2UI_REQUEST_VALUE_ERR_UNSUPPORTED;
                   }},
      dataAccess_{instance.descriptor->extension_data},
      map_{LV2_URID__map, &LV2Features::map()},
      unmap_{LV2_URID__unmap, &LV2Features::unmap()},
      options_{LV2_OPTIONS__options, options.options()},
      log_{LV2_LOG__log, &log.feature()},
      // The window's number stands in the pointer's place.
      parent_{LV2_UI__parent,
              reinterpret_cast<void*>(parent)},  // NOLINT(performance-no-int-to-ptr)
      resize_{LV2_UI__resize, &resizeData_},
      requestValue_{LV2_UI__requestValue, &requestData_},
      idle_{LV2_UI__idleInterface, nullptr},
      instance_{LV2_INSTANCE_ACCESS_URI, instance.handle},
      data_{LV2_DATA_ACCESS_URI, &dataAccess_},
      features_{&map_,          &unmap_, &options_,  &log_,  &parent_, &resize_,
                &requestValue_, &idle_,  &instance_, &data_, nullptr} {}

int LV2PluginUIFeatures::resize(LV2UI_Feature_Handle handle, int width, int height) {
    if (width < 1 || height < 1) {
        return 1;
    }
    static_cast<LV2PluginUIFeatures*>(handle)->onResize_({width, height});
    return 0;
}

bool LV2PluginUIFeatures::isOffered(const std::string& uri) {
    // The last four are the UI's own remarks, which a host heeds or has nothing to add to.
    static const std::array<std::string, 17> offered{LV2_URID__map,
                                                     LV2_URID__unmap,
                                                     LV2_OPTIONS__options,
                                                     LV2_LOG__log,
                                                     LV2_UI__parent,
                                                     LV2_UI__resize,
                                                     LV2_UI__requestValue,
                                                     LV2_UI__idleInterface,
                                                     LV2_UI__portMap,
                                                     LV2_UI__portSubscribe,
                                                     LV2_UI__touch,
                                                     LV2_INSTANCE_ACCESS_URI,
                                                     LV2_DATA_ACCESS_URI,
                                                     LV2_UI__fixedSize,
                                                     LV2_UI__noUserResize,
                                                     LV2_UI_PREFIX "makeResident",
                                                     LV2_UI_PREFIX "makeSONameResident"};
    return std::find(offered.begin(), offered.end(), uri) != offered.end();
}

}  // namespace orvalo
