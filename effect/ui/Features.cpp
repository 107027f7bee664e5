#include "effect/ui/Features.h"

#include <lv2/atom/atom.h>
#include <lv2/options/options.h>

#include <algorithm>
#include <string_view>

namespace orvalo::effect::ui {

namespace {

/// Reads a float option, clamped to the range. Leaves the value unchanged if there is no such
/// option.
void readOption(const LV2_Options_Option* options, LV2_URID key, LV2_URID type, double least,
                double most, double& value) {
    for (const auto* option = options; option->key != 0 || option->value != nullptr; ++option) {
        if (option->key != key || option->type != type || option->size != sizeof(float) ||
            option->value == nullptr) {
            continue;
        }
        const double given = *static_cast<const float*>(option->value);
        if (given > 0.0) {
            value = std::clamp(given, least, most);
        }
    }
}

}  // namespace

Features::Features(const LV2_Feature* const* features) {
    const LV2_Options_Option* options = nullptr;
    for (const auto* at = features; at != nullptr && *at != nullptr; ++at) {
        const std::string_view uri = (*at)->URI;
        const void* data = (*at)->data;
        if (uri == LV2_UI__parent) {
            parent = reinterpret_cast<std::uintptr_t>(data);
        } else if (uri == LV2_UI__resize) {
            resize = static_cast<const LV2UI_Resize*>(data);
        } else if (uri == LV2_UI__portMap) {
            portMap = static_cast<const LV2UI_Port_Map*>(data);
        } else if (uri == LV2_UI__portSubscribe) {
            portSubscribe = static_cast<const LV2UI_Port_Subscribe*>(data);
        } else if (uri == LV2_UI__touch) {
            touch = static_cast<const LV2UI_Touch*>(data);
        } else if (uri == presetWriterUri) {
            presetWriter = static_cast<const PresetWriter*>(data);
        } else if (uri == LV2_URID__map) {
            map = static_cast<const LV2_URID_Map*>(data);
        } else if (uri == LV2_OPTIONS__options) {
            options = static_cast<const LV2_Options_Option*>(data);
        }
    }
    if (map == nullptr || options == nullptr) {
        return;
    }
    const LV2_URID type = map->map(map->handle, LV2_ATOM__Float);
    readOption(options, map->map(map->handle, LV2_UI__scaleFactor), type, 0.5, 8.0, scale);
    readOption(options, map->map(map->handle, LV2_UI__updateRate), type, 5.0, 60.0, updateRate);
}

}  // namespace orvalo::effect::ui
