#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// A preset of the bundle: the parameters that it sets; the others stay as they are.
struct Preset {
    std::string name;
    std::vector<std::pair<Parameter, float>> values;
};

/// The presets and which of them is in force. That is told by the values, so that a preset which
/// the host chose is recognised, too.
class PresetChoice {
  public:
    PresetChoice() = default;
    /// In the order in which they are offered.
    explicit PresetChoice(std::vector<Preset> presets) : presets_(std::move(presets)) {}

    const std::vector<Preset>& presets() const { return presets_; }

    /// Looks at the values anew; true when the label has changed.
    bool update(const ParameterValues& values);

    /// Says that a preset was chosen, so that of two that are alike this one is named.
    void choose(std::size_t index) { chosen_ = index; }

    /// The preset that was in force last, absent as long as none was.
    std::optional<std::size_t> chosen() const { return chosen_; }

    /// The neighbour of the chosen preset, round the ends; before any choice the first or the last.
    /// Absent without presets.
    std::optional<std::size_t> neighbour(int direction) const;

    /// "Drum Punch", "Drum Punch *" once something was changed, "Default", "Own settings".
    const std::string& label() const { return label_; }

  private:
    std::string describe(const ParameterValues& values);

    std::vector<Preset> presets_;
    std::optional<std::size_t> chosen_;
    std::string label_ = "Default";
};

}  // namespace orvalo::effect::ui
