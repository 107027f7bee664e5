#pragma once

#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>

#include <cstdint>
#include <optional>

#include "effect/ui/PresetWriter.h"

namespace orvalo::effect::ui {

/// The host's LV2 features for the UI. Only the parent window is required.
struct Features {
    explicit Features(const LV2_Feature* const* features);

    /// The parent X window.
    std::optional<std::uintptr_t> parent;
    const LV2UI_Resize* resize = nullptr;
    const LV2UI_Port_Map* portMap = nullptr;
    const LV2UI_Port_Subscribe* portSubscribe = nullptr;
    const LV2UI_Touch* touch = nullptr;
    /// Null where the UI writes presets itself.
    const PresetWriter* presetWriter = nullptr;
    const LV2_URID_Map* map = nullptr;
    /// Scale factor of the screen, 0.5 to 8.
    double scale = 1.0;
    /// Port updates per second, 5 to 60.
    double updateRate = 60.0;
};

}  // namespace orvalo::effect::ui
