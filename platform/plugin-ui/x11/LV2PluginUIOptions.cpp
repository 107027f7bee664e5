#include "platform/plugin-ui/x11/LV2PluginUIOptions.h"

#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/parameters/parameters.h>
#include <lv2/ui/ui.h>

#include <algorithm>
#include <utility>

#include "platform/audio/lv2/LV2Options.h"
#include "platform/audio/lv2/URIDMap.h"

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

LV2PluginUIOptions::LV2PluginUIOptions(Values values)
    : sampleRate_(static_cast<float>(values.sampleRate)),
      updateRate_(static_cast<float>(values.updateRate)),
      scaleFactor_(static_cast<float>(values.scaleFactor)),
      sequenceSize_(static_cast<std::int32_t>(values.sequenceSize)),
      windowTitle_(std::move(values.windowTitle)),
      contextName_(std::move(values.contextName)),
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
    static const std::array<std::string, 6> offered{
        LV2_PARAMETERS__sampleRate, LV2_UI__updateRate,
        LV2_UI__scaleFactor,        LV2_UI__windowTitle,
        LV2_BUF_SIZE__sequenceSize, "urn:tessaly:audio-component#contextName"};
    return std::find(offered.begin(), offered.end(), uri) != offered.end();
}

}  // namespace orvalo
