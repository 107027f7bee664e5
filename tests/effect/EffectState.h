#pragma once

#include <lilv/lilv.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "tests/effect/EffectWorld.h"
#include "tests/effect/UridMap.h"

namespace orvalo::testing {

/// The states of the effect as hosts save and restore them, with lilv.
class EffectState {
  public:
    using Values = std::map<std::string, float>;

    /// Saves the control values as a preset, as jalv and Ardour do. plugin: null for the effect
    /// without a side-chain input.
    static void save(const Values& values, const std::string& label,
                     const std::filesystem::path& folder, const std::string& file,
                     const LilvPlugin* plugin = nullptr);
    /// The control values in a file.
    static Values load(const std::filesystem::path& file);
    /// The presets of the effect with the URI `name` by label, in a world of the search path.
    static std::map<std::string, Values> presets(const std::string& path,
                                                 const char* name = "urn:tessaly:orvalo");
};

}  // namespace orvalo::testing
