#include "platform/plugin-ui/x11/LV2PluginUIFeatures.h"

#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/log/log.h>
#include <lv2/parameters/parameters.h>
#include <lv2/urid/urid.h>

#include <algorithm>
#include <utility>

#include "platform/audio/lv2/LV2Features.h"
#include "platform/audio/lv2/LV2Options.h"
#include "platform/audio/lv2/URIDMap.h"
#include "platform/plugin-ui/x11/LV2PluginUI.h"

namespace orvalo {

namespace {

LV2_Options_Option option(const char* key, const char* type, const void* value, std::size_t size) {
    auto& map = URIDMap::shared();
    return {LV2_OPTIONS_INSTANCE, 0,    map.map(key), static_cast<std::uint32_t>(size),
            map.map(type),        value};
}

LV2_Options_Option number(const char* key, const float& value) {
    return option(key, LV2_ATOM__Float, &value, sizeof(value));
}

}  // namespace

LV2PluginUIOptions::LV2PluginUIOptions(const LV2LocalAudioUnit& unit, const LV2PluginUIData& data,
                                       double scaleFactor)
    : sampleRate_(static_cast<float>(unit.sampleRate())),
      updateRate_(static_cast<float>(LV2PluginUI::kUpdateRate)),
      scaleFactor_(static_cast<float>(scaleFactor)),
      sequenceSize_(static_cast<std::int32_t>(unit.data().sequenceSize)),
      windowTitle_(data.title),
      contextName_(unit.contextName()),
      options_{
          number(LV2_PARAMETERS__sampleRate, sampleRate_),
          number(LV2_UI__updateRate, updateRate_),
          number(LV2_UI__scaleFactor, scaleFactor_),
          option(LV2_UI__windowTitle, LV2_ATOM__String, windowTitle_.c_str(),
                 windowTitle_.size() + 1),
          option(LV2_BUF_SIZE__sequenceSize, LV2_ATOM__Int, &sequenceSize_, sizeof(sequenceSize_)),
          LV2Options::contextName(contextName_),
          {}} {}

bool LV2PluginUIOptions::isOffered(const std::string& uri) {
    static const std::array<std::string, 6> offered{LV2_PARAMETERS__sampleRate, LV2_UI__updateRate,
                                                    LV2_UI__scaleFactor,        LV2_UI__windowTitle,
                                                    LV2_BUF_SIZE__sequenceSize, kContextNameURI};
    return std::find(offered.begin(), offered.end(), uri) != offered.end();
}

LV2PluginUIFeatures::LV2PluginUIFeatures(LV2PluginUIOptions& options, LV2Log& log,
                                         unsigned long parent,
                                         const LV2LocalAudioUnit::InstanceAccess& instance,
                                         std::function<void(X11Size)> onResize,
                                         LV2PresetRequests presets)
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
      // The feature's data is the window's number itself.
      parent_{LV2_UI__parent,
              reinterpret_cast<void*>(parent)},  // NOLINT(performance-no-int-to-ptr)
      resize_{LV2_UI__resize, &resizeData_},
      requestValue_{LV2_UI__requestValue, &requestData_},
      idle_{LV2_UI__idleInterface, nullptr},
      instance_{LV2_INSTANCE_ACCESS_URI, instance.handle},
      data_{LV2_DATA_ACCESS_URI, &dataAccess_},
      presetWriter_(std::move(presets)),
      features_{&map_,
                &unmap_,
                &options_,
                &log_,
                &parent_,
                &resize_,
                &requestValue_,
                &idle_,
                &instance_,
                &data_,
                presetWriter_.feature(),
                nullptr} {}

int LV2PluginUIFeatures::resize(LV2UI_Feature_Handle handle, int width, int height) {
    if (width < 1 || height < 1) {
        return 1;
    }
    static_cast<LV2PluginUIFeatures*>(handle)->onResize_({width, height});
    return 0;
}

bool LV2PluginUIFeatures::isOffered(const std::string& uri) {
    // The last four need nothing from the host.
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
