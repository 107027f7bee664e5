#pragma once

#include <string>
#include <vector>

#include "effect/ui/model/PresetChoice.h"

namespace orvalo::effect::ui {

/// The presets of the effect that the bundle at a path holds, ordered by name. None where the
/// bundle cannot be read.
std::vector<Preset> readPresets(const std::string& bundle);

}  // namespace orvalo::effect::ui
