#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// A preset of the bundle: the values of the parameters that it sets.
struct Preset {
    std::string name;
    std::vector<std::pair<Parameter, float>> values;
};

/// The presets and the active one. The active preset is found by comparing values, so that a preset
/// chosen in the host is recognised, too.
class PresetChoice {
  public:
    PresetChoice() = default;
    /// presets: in the order of the list.
    explicit PresetChoice(std::vector<Preset> presets) : presets_(std::move(presets)) {}

    const std::vector<Preset>& presets() const { return presets_; }

    /// Compares the values with the presets. Returns whether the label has changed.
    bool update(const ParameterValues& values);

    /// Marks a preset as chosen: among equal presets, the label names this one.
    void choose(std::size_t index) { chosen_ = index; }

    /// The last active preset; absent if there was none.
    std::optional<std::size_t> chosen() const { return chosen_; }

    /// The next (direction > 0) or previous preset, wrapping at the ends. Starts at the first or
    /// last preset when none is chosen. Absent without presets.
    std::optional<std::size_t> neighbour(int direction) const;

    /// "Drum Punch", "Drum Punch *" after a change, "Default", "Custom settings".
    const std::string& label() const { return label_; }

  private:
    std::string describe(const ParameterValues& values);

    std::vector<Preset> presets_;
    std::optional<std::size_t> chosen_;
    std::string label_ = "Default";
};

}  // namespace orvalo::effect::ui
