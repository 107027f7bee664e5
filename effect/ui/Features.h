#pragma once

#include <lv2/ui/ui.h>

#include <cstdint>
#include <optional>

namespace orvalo::effect::ui {

/// What a host offers an interface. Only the parent window is needed; all else may be absent.
struct Features {
    explicit Features(const LV2_Feature* const* features);

    /// The X window to live in.
    std::optional<std::uintptr_t> parent;
    const LV2UI_Resize* resize = nullptr;
    const LV2UI_Port_Map* portMap = nullptr;
    const LV2UI_Port_Subscribe* portSubscribe = nullptr;
    const LV2UI_Touch* touch = nullptr;
    /// Pixels of the screen for one of an ordinary screen, 0.5 to 8.
    double scale = 1.0;
    /// How often a second the host passes on what the effect shows, 5 to 60.
    double updateRate = 60.0;
};

}  // namespace orvalo::effect::ui
