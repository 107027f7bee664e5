#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "effect/dsp/Parameter.h"
#include "effect/ui/model/ActivityLight.h"
#include "effect/ui/model/Control.h"
#include "effect/ui/model/EditHistory.h"
#include "effect/ui/model/History.h"
#include "effect/ui/model/Layout.h"
#include "effect/ui/model/MeterMemory.h"
#include "effect/ui/model/PresetChoice.h"
#include "effect/ui/model/Spectrum.h"
#include "effect/ui/model/TextEntry.h"

namespace orvalo::effect::ui {

/// What lies below the pointer.
struct Target {
    enum class Kind : std::uint8_t {
        nothing,
        // The fields of the header, in the order of Focus.
        undo,
        redo,
        previousPreset,
        presetName,
        nextPreset,
        savePreset,
        /// A or B.
        sound,
        copySound,
        /// A switch, a value of a choice (`entry`), or a knob with its name.
        control,
        /// A knob's value, which can be typed.
        value,
        /// The transfer curve, and its points that can be dragged.
        curve,
        thresholdPoint,
        ratioPoint,
        history,
        /// The button that chooses the span of the history.
        historySpan,
        /// A page's tab; `entry` is the page.
        tab,
        /// The picture of the open page; `entry` is the page.
        graph,
        meters,
        /// The pad, and the keyboard below it.
        pad,
        noteKeys,
        /// An entry of the open list of presets, or a place beside it.
        presetEntry,
        renameEntry,
        deleteEntry,
        /// The button that shows the columns of the list before (`entry` is 0) or behind (1).
        presetScroll,
        outsideList,
    };

    Kind kind = Kind::nothing;
    Parameter parameter = Parameter::enabled;
    std::size_t entry = 0;

    bool operator==(const Target&) const = default;
};

/// A part of the picture that is redrawn separately. Each control is one more part.
enum class Part : std::uint8_t {
    header,
    curve,
    history,
    meters,
    lightIn,
    lightOut,
    truePeak,
    pad,
    tabs,
    graph,
    firstControl
};
inline constexpr std::size_t partCount =
    static_cast<std::size_t>(Part::firstControl) + parameterCount;

constexpr std::size_t partOf(Parameter parameter) {
    return static_cast<std::size_t>(Part::firstControl) + static_cast<std::size_t>(parameter);
}

/// The places of the keyboard focus: the fields of the header, then the controls, the tabs, the
/// pad, the span of the history and the meters. Scene::tabOrder() tells their order.
enum class Focus : std::uint8_t {
    undo,
    redo,
    previousPreset,
    presetName,
    nextPreset,
    savePreset,
    sound,
    copySound,
    firstControl,
};

/// A field of the header.
struct HeaderField {
    Target::Kind kind;
    Focus focus;
    Rect Layout::*area;
};
inline constexpr std::array<HeaderField, static_cast<std::size_t>(Focus::firstControl)>
    headerFields{{
        {Target::Kind::undo, Focus::undo, &Layout::undo},
        {Target::Kind::redo, Focus::redo, &Layout::redo},
        {Target::Kind::previousPreset, Focus::previousPreset, &Layout::previousPreset},
        {Target::Kind::presetName, Focus::presetName, &Layout::presetName},
        {Target::Kind::nextPreset, Focus::nextPreset, &Layout::nextPreset},
        {Target::Kind::savePreset, Focus::savePreset, &Layout::savePreset},
        {Target::Kind::sound, Focus::sound, &Layout::sound},
        {Target::Kind::copySound, Focus::copySound, &Layout::copySound},
    }};

constexpr std::size_t focusOf(Parameter parameter) {
    return static_cast<std::size_t>(Focus::firstControl) + static_cast<std::size_t>(parameter);
}

inline constexpr std::size_t tabsFocus =
    static_cast<std::size_t>(Focus::firstControl) + parameterCount;
inline constexpr std::size_t padFocus = tabsFocus + 1;
inline constexpr std::size_t historyFocus = padFocus + 1;
inline constexpr std::size_t metersFocus = historyFocus + 1;

/// A value, or the name of a preset, that is being typed.
struct ValueEntry {
    enum class Purpose : std::uint8_t { value, savePreset, renamePreset };

    /// The control whose value is typed; not used for a name.
    Parameter parameter;
    TextEntry entry;
    /// The error in the text after a failed commit, else empty.
    std::string complaint;
    Purpose purpose = Purpose::value;
    /// The preset to rename.
    std::string renamed{};
    /// The name of which the user was told that saving replaces a preset; empty before.
    std::string replaced{};
};

/// The state that the window shows, and the parts that have changed since they were drawn.
struct Scene {
    Layout layout;
    ParameterValues values;
    Levels levels;
    History history;
    /// The history as it was when the user paused it.
    std::optional<History> pausedHistory;
    MeterMemory meterMemory;
    ActivityLight lightIn;
    ActivityLight lightOut;
    BeatLight beatLight;
    Spectrum spectrum;
    PresetChoice presets;
    EditHistory edits;
    Comparison comparison;

    /// The keys A to K with their black keys.
    static constexpr std::size_t noteKeyCount = 13;
    std::bitset<noteKeyCount> heldNoteKeys;
    /// 0 while the pad is not pressed.
    std::uint8_t padVelocity = 0;

    Target hovered;
    /// Whether the text about the hovered target is shown.
    bool showsTip = false;
    std::size_t focus = focusOf(Parameter::threshold);
    /// Whether the window has the keyboard focus, and whether the focused control is marked.
    bool hasKeyboard = false;
    bool showsFocus = false;
    std::optional<ValueEntry> entry;
    /// The marked entry of the preset list while the list is open.
    std::optional<std::size_t> list;
    /// A line about the last action, shown below the preset's name until the next press or key.
    std::string notice;

    std::bitset<partCount> changed = std::bitset<partCount>().set();
    /// The whole picture must be redrawn.
    bool allChanged = true;

    void markChanged(Part part) { changed.set(static_cast<std::size_t>(part)); }
    void markChanged(Parameter parameter) { changed.set(partOf(parameter)); }
    void markAllChanged() { allChanged = true; }
    bool isChanged() const { return allChanged || changed.any(); }
    void markDrawn() {
        changed.reset();
        allChanged = false;
    }

    bool hasVisibleFocus(std::size_t place) const {
        return hasKeyboard && showsFocus && focus == place;
    }
    const History& visibleHistory() const { return pausedHistory ? *pausedHistory : history; }

    /// The focused control; absent when another part has the focus.
    std::optional<Parameter> focusedControl() const {
        const auto first = static_cast<std::size_t>(Focus::firstControl);
        return focus < first || focus >= tabsFocus
                   ? std::nullopt
                   : std::optional(static_cast<Parameter>(focus - first));
    }

    /// The places of the focus that the Tab key visits: those of the open page stand behind the
    /// tabs.
    std::vector<std::size_t> tabOrder() const;

    bool isNaming() const { return entry && entry->purpose != ValueEntry::Purpose::value; }
    /// The text field while something is typed.
    Rect entryField() const {
        return isNaming() ? layout.presetName : layout.entryField(entry->parameter);
    }
    /// The line below the field: the complaint about the text, or what the keys do.
    std::string entryLine() const;

    /// The target at a position of the window.
    Target targetAt(double x, double y) const;
};

}  // namespace orvalo::effect::ui
