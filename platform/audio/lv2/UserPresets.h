#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "platform/audio/lv2/LV2PluginData.h"

namespace orvalo {

/// A preset of the user's, as a plug-in's UI asks for it. Nothing in it is checked.
struct UserPreset {
    std::string folder;  ///< The name of the preset's bundle.
    std::string label;
    std::string comment;                                  ///< "" for none.
    std::vector<std::pair<std::uint32_t, float>> values;  ///< By port.
};

/// Where LV2 hosts save presets: `~/.lv2`.
std::filesystem::path userPresetFolder();

/// Writes a bundle in that folder with one preset of the plug-in, and with nothing but what this
/// function composes. It replaces only a bundle that removeUserPreset() would remove. Throws
/// NSError for anything but a preset for control inputs of the plug-in, and when there are 1,000
/// already.
void writeUserPreset(const std::string& plugin, const std::vector<LV2Port>& ports,
                     const UserPreset& preset);

/// Removes a bundle of that folder that has one preset of the plug-in and Turtle files only. Throws
/// NSError for another one.
void removeUserPreset(const std::string& plugin, const std::string& folder);

}  // namespace orvalo
