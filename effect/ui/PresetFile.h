#pragma once

#include <string>
#include <vector>

#include "effect/ui/model/PresetChoice.h"

namespace orvalo::effect::ui {

/// The effect's presets in the bundle at a path, ordered by name. Empty if the bundle cannot be
/// read.
std::vector<Preset> readPresets(const std::string& bundle);

}  // namespace orvalo::effect::ui
