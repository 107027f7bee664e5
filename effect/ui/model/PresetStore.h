#pragma once

#include <string>
#include <vector>

#include "effect/ui/model/PresetChoice.h"

namespace orvalo::effect::ui {

/// Where the presets are kept. No two presets of the user's have the same name.
class PresetStore {
  public:
    PresetStore() = default;
    PresetStore(const PresetStore&) = delete;
    PresetStore& operator=(const PresetStore&) = delete;

    /// The factory presets by name, then the user's by name.
    virtual std::vector<Preset> read() = 0;
    /// Stores a preset of the user's, in place of those with its name and with the name `replaced`.
    /// Returns a complaint; "" on success.
    virtual std::string save(const Preset& preset, const std::string& replaced) = 0;
    /// Deletes the user's preset of that name. Returns a complaint; "" on success.
    virtual std::string remove(const std::string& name) = 0;

  protected:
    ~PresetStore() = default;
};

}  // namespace orvalo::effect::ui
