#pragma once

#include <bitset>
#include <cstddef>
#include <optional>
#include <string>

#include "effect/dsp/Parameter.h"
#include "effect/ui/model/ActivityLight.h"
#include "effect/ui/model/Control.h"
#include "effect/ui/model/History.h"
#include "effect/ui/model/Layout.h"
#include "effect/ui/model/PresetChoice.h"
#include "effect/ui/model/TextEntry.h"

namespace orvalo::effect::ui {

/// What lies below the pointer.
struct Target {
    enum class Kind : std::uint8_t {
        nothing,
        previousPreset,
        presetName,
        nextPreset,
        /// The switch, or a knob with its name.
        control,
        /// A knob's value, which can be typed.
        value,
        /// An entry of the open list of presets, or a place beside it.
        presetEntry,
        outsideList,
    };

    Kind kind = Kind::nothing;
    Parameter parameter = Parameter::enabled;
    std::size_t entry = 0;

    bool operator==(const Target&) const = default;
};

/// A part of the picture that is redrawn separately. Each control is one more part.
enum class Part : std::uint8_t { header, curve, history, meters, lightIn, lightOut, firstControl };
inline constexpr std::size_t partCount =
    static_cast<std::size_t>(Part::firstControl) + shownParameterCount;

constexpr std::size_t partOf(Parameter parameter) {
    return static_cast<std::size_t>(Part::firstControl) + static_cast<std::size_t>(parameter);
}

/// The keyboard focus, in tab order: the three fields of the preset choice, then the controls.
enum class Focus : std::uint8_t { previousPreset, presetName, nextPreset, firstControl };
inline constexpr std::size_t focusCount =
    static_cast<std::size_t>(Focus::firstControl) + shownParameterCount;

/// A value that is being typed.
struct ValueEntry {
    Parameter parameter;
    TextEntry entry;
    /// The error in the text after a failed commit, else empty.
    std::string complaint;
};

/// The state that the window shows, and the parts that have changed since they were drawn.
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
    /// Whether the window has the keyboard focus, and whether the focused control is marked.
    bool hasKeyboard = false;
    bool showsFocus = false;
    std::optional<ValueEntry> entry;
    /// The marked entry of the preset list while the list is open.
    std::optional<std::size_t> list;

    std::bitset<partCount> changed = std::bitset<partCount>().set();
    /// The whole picture must be redrawn.
    bool allChanged = true;

    void markChanged(Part part) { changed.set(static_cast<std::size_t>(part)); }
    void markChanged(Parameter parameter) {
        if (partOf(parameter) < partCount) {
            changed.set(partOf(parameter));
        }
    }
    void markAllChanged() { allChanged = true; }
    bool isChanged() const { return allChanged || changed.any(); }
    void markDrawn() {
        changed.reset();
        allChanged = false;
    }

    /// The focused control; absent when a field of the preset choice has the focus.
    std::optional<Parameter> focusedControl() const {
        const auto first = static_cast<std::size_t>(Focus::firstControl);
        return focus < first ? std::nullopt : std::optional(static_cast<Parameter>(focus - first));
    }

    /// The target at a position of the window.
    Target targetAt(double x, double y) const;
};

}  // namespace orvalo::effect::ui
