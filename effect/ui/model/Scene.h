#pragma once

#include <bitset>
#include <cstddef>
#include <optional>
#include <string>

#include "effect/dsp/Parameter.h"
#include "effect/ui/model/ActivityLight.h"
#include "effect/ui/model/History.h"
#include "effect/ui/model/Layout.h"
#include "effect/ui/model/Levels.h"
#include "effect/ui/model/PresetChoice.h"
#include "effect/ui/model/Target.h"
#include "effect/ui/model/TextEntry.h"

namespace orvalo::effect::ui {

/// A part of the picture that is drawn anew by itself. The controls follow, one part each.
enum class Part : std::uint8_t { header, curve, history, meters, lightIn, lightOut, firstControl };
inline constexpr std::size_t partCount =
    static_cast<std::size_t>(Part::firstControl) + parameterCount;

constexpr std::size_t partOf(Parameter parameter) {
    return static_cast<std::size_t>(Part::firstControl) + static_cast<std::size_t>(parameter);
}

/// What has the keyboard, in the order of the tab key: the three fields of the preset choice, then
/// the controls.
enum class Focus : std::uint8_t { previousPreset, presetName, nextPreset, firstControl };
inline constexpr std::size_t focusCount =
    static_cast<std::size_t>(Focus::firstControl) + parameterCount;

/// A value that is being typed.
struct ValueEntry {
    Parameter parameter;
    TextEntry entry;
    /// What is wrong with the text, once that was tried.
    std::string complaint;
};

/// All that the window shows, and which parts of it have changed since they were drawn.
struct Scene {
    Layout layout;
    ParameterValues values;
    Levels levels;
    History history;
    ActivityLight lightIn;
    ActivityLight lightOut;
    PresetChoice presets;

    Target hovered;
    std::size_t focus = static_cast<std::size_t>(Focus::firstControl) + 1;
    /// Whether the window has the keyboard, and whether it was used last.
    bool hasKeyboard = false;
    bool showsFocus = false;
    std::optional<ValueEntry> entry;
    /// The marked entry of the list of presets while it is open.
    std::optional<std::size_t> list;

    std::bitset<partCount> changed = std::bitset<partCount>().set();
    /// Nothing of the old picture can stay.
    bool allChanged = true;

    void touch(Part part) { changed.set(static_cast<std::size_t>(part)); }
    void touch(Parameter parameter) { changed.set(partOf(parameter)); }
    void touchAll() { allChanged = true; }
    bool isChanged() const { return allChanged || changed.any(); }
    void drawn() {
        changed.reset();
        allChanged = false;
    }

    /// The control that has the keyboard, absent for the preset choice.
    std::optional<Parameter> focusedControl() const {
        const auto first = static_cast<std::size_t>(Focus::firstControl);
        return focus < first ? std::nullopt : std::optional(static_cast<Parameter>(focus - first));
    }

    /// What lies at a place of the window.
    Target targetAt(double x, double y) const;
};

}  // namespace orvalo::effect::ui
