#include "effect/ui/model/PresetChoice.h"

#include <algorithm>
#include <cmath>

namespace orvalo::effect::ui {

namespace {

/// With tolerance: a host may have stored the values as text.
bool isSame(float one, float other) {
    return std::abs(one - other) <= 1e-4F * std::max(1.0F, std::abs(other));
}

bool matches(const Preset& preset, const ParameterValues& values) {
    return !preset.values.empty() &&
           std::all_of(preset.values.begin(), preset.values.end(),
                       [&](const auto& one) { return isSame(values[one.first], one.second); });
}

Preset defaultPreset() {
    Preset preset{.name = defaultPresetName,
                  .values = {},
                  .description = "Every control at its default: resets the whole effect."};
    for (std::size_t i = 0; i < parameterCount; ++i) {
        const auto parameter = static_cast<Parameter>(i);
        if (isInPresets(parameter)) {
            preset.values.emplace_back(parameter, range(parameter).standard);
        }
    }
    return preset;
}

}  // namespace

void PresetChoice::replace(std::vector<Preset> presets) {
    const auto key = chosenKey();
    presets.insert(presets.begin(), defaultPreset());
    presets_ = std::move(presets);
    choose(key);
}

std::optional<std::size_t> PresetChoice::find(const Key& key) const {
    const auto found = std::find_if(presets_.begin(), presets_.end(), [&](const Preset& one) {
        return one.name == key.name && one.isUser == key.isUser;
    });
    return found == presets_.end()
               ? std::nullopt
               : std::optional(static_cast<std::size_t>(found - presets_.begin()));
}

void PresetChoice::choose(const std::optional<Key>& key) {
    chosen_ = key ? find(*key) : std::nullopt;
}

std::optional<PresetChoice::Key> PresetChoice::chosenKey() const {
    if (!chosen_) {
        return std::nullopt;
    }
    const Preset& preset = presets_.at(*chosen_);
    return Key{preset.name, preset.isUser};
}

std::string PresetChoice::describe(const ParameterValues& values) {
    if (chosen_ && matches(presets_.at(*chosen_), values)) {
        return presets_.at(*chosen_).name;
    }
    const auto found = std::find_if(presets_.begin(), presets_.end(),
                                    [&](const Preset& one) { return matches(one, values); });
    if (found != presets_.end()) {
        chosen_ = static_cast<std::size_t>(found - presets_.begin());
        return found->name;
    }
    return chosen_ ? presets_.at(*chosen_).name + " *" : "Custom settings";
}

bool PresetChoice::update(const ParameterValues& values) {
    std::string label = describe(values);
    const bool changed = label != label_;
    label_ = std::move(label);
    return changed;
}

std::size_t PresetChoice::neighbour(int direction) const {
    const std::size_t count = presets_.size();
    if (!chosen_) {
        return direction > 0 ? 0 : count - 1;
    }
    return (*chosen_ + (direction > 0 ? 1 : count - 1)) % count;
}

}  // namespace orvalo::effect::ui
