#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "effect/ui/model/PresetChoice.h"

namespace orvalo::effect::ui {

/// A preset in a bundle.
struct StoredPreset {
    Preset preset;
    /// The folder of the bundle. Preset::isUser says whether the bundle has nothing else.
    std::filesystem::path folder;
};

/// The effect's presets in a bundle, by name; each sets every control but Enabled. Empty if the
/// bundle cannot be read.
std::vector<StoredPreset> readBundle(const std::filesystem::path& folder);

/// The effect's presets in the bundles of a folder, as hosts save them; of equal names the first.
std::vector<StoredPreset> readBundles(const std::filesystem::path& folder);

/// Writes a bundle with one preset, in the form that lilv saves. Throws std::system_error; a folder
/// that was not there before is then removed.
void writeBundle(const std::filesystem::path& folder, const Preset& preset);

/// Removes the manifest, the other Turtle files, and the folder if nothing else is in it. Throws
/// std::system_error.
void removeBundle(const std::filesystem::path& folder);

}  // namespace orvalo::effect::ui
