#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// A preset: the values of the parameters that it sets.
struct Preset {
    std::string name;
    std::vector<std::pair<Parameter, float>> values;
    std::string description{};
    /// Whether the user saved it, so that it can be replaced, renamed and deleted.
    bool isUser = false;

    bool operator==(const Preset&) const = default;
};

/// Whether presets set the parameter. They do not switch the effect on or off.
constexpr bool isInPresets(Parameter parameter) {
    return parameter != Parameter::enabled;
}

/// The name of the first preset, which sets every parameter to its default.
inline constexpr const char* defaultPresetName = "Default";

/// The presets and the active one. The active preset is found by comparing values, so that a preset
/// chosen in the host is recognised, too. The first preset is always Default.
class PresetChoice {
  public:
    /// What identifies a preset while others come and go.
    struct Key {
        std::string name;
        bool isUser = false;
        bool operator==(const Key&) const = default;
    };

    PresetChoice() : PresetChoice(std::vector<Preset>{}) {}
    /// presets: in the order of the list, without Default.
    explicit PresetChoice(std::vector<Preset> presets) { replace(std::move(presets)); }

    const std::vector<Preset>& presets() const { return presets_; }
    /// Takes other presets, in the order of the list, without Default. The chosen one stays chosen
    /// if it is among them.
    void replace(std::vector<Preset> presets);
    /// The user's preset of that name, or the factory preset.
    std::optional<std::size_t> find(const Key& key) const;

    /// Compares the values with the presets. Returns whether the label has changed.
    bool update(const ParameterValues& values);

    /// Marks a preset as chosen: among equal presets, the label names this one.
    void choose(std::size_t index) { chosen_ = index; }
    void choose(const std::optional<Key>& key);

    /// The last active preset; absent if there was none.
    std::optional<std::size_t> chosen() const { return chosen_; }
    std::optional<Key> chosenKey() const;

    /// The next (direction > 0) or previous preset, wrapping at the ends. Starts at the first or
    /// last preset when none is chosen.
    std::size_t neighbour(int direction) const;

    /// "Drum Punch", "Drum Punch *" after a change, "Custom settings".
    const std::string& label() const { return label_; }

  private:
    std::string describe(const ParameterValues& values);

    std::vector<Preset> presets_;
    std::optional<std::size_t> chosen_;
    std::string label_ = defaultPresetName;
};

}  // namespace orvalo::effect::ui
