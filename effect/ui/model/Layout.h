#pragma once

#include <array>
#include <cstddef>

#include "effect/dsp/Parameter.h"
#include "effect/ui/model/Rect.h"

namespace orvalo::effect::ui {

/// The parts of the lower half that belong together, each on a panel of its own.
enum class Section : std::uint8_t { compressor, level, ducking, trigger, meters };
inline constexpr std::size_t sectionCount = 5;

/// The bars of the meters' panel.
enum class Meter : std::uint8_t { input, output, reduction, ducking };
inline constexpr std::size_t meterCount = 4;

/// A panel: its area, the line of its title, and at that line's end the place of its light.
struct Panel {
    Rect area;
    Rect title;
};

/// One control: where its name, its knob and its value stand. The switch has only an area.
struct Cell {
    Rect area;
    Rect label;
    Rect dial;
    Rect value;
};

/// Where everything stands in a window of a size. All distances are multiples of one unit, 8
/// pixels in the window's natural size; it grows slower than the window, so that the graphs get
/// most of a large one, and shrinks slower, so that text stays legible in a small one.
struct Layout {
    /// The natural and the smallest sensible size, in pixels at a scale of 1.
    static constexpr int naturalWidth = 640;
    static constexpr int naturalHeight = 480;
    static constexpr int leastWidth = 320;
    static constexpr int leastHeight = 240;
    /// The smallest text, in pixels at a scale of 1: below it letters run together.
    static constexpr double leastText = 8.0;

    /// Sizes in pixels, scale in pixels of the screen for one of an ordinary screen. Any size has
    /// a layout; in one that is too small parts may be empty.
    static Layout of(double width, double height, double scale);

    double width = 0.0;
    double height = 0.0;
    double unit = 0.0;
    /// Height of the letters' box, in pixels.
    double text = 0.0;
    /// The way of the pointer for a knob's whole range.
    double dragTravel = 0.0;

    Rect header;
    Rect wordmark;
    Rect previousPreset;
    Rect presetName;
    Rect nextPreset;
    Rect curve;
    Rect history;
    std::array<Panel, sectionCount> panels{};
    std::array<Cell, parameterCount> cells{};
    std::array<Rect, meterCount> meters{};

    const Panel& panel(Section section) const { return panels[static_cast<std::size_t>(section)]; }
    const Cell& cell(Parameter parameter) const {
        return cells[static_cast<std::size_t>(parameter)];
    }
    const Rect& meter(Meter meter) const { return meters[static_cast<std::size_t>(meter)]; }

    Rect whole() const { return {0.0, 0.0, width, height}; }

    /// The list of presets that opens below the name, in as many columns as it takes to show them
    /// all, and the place of one of its entries.
    Rect presetList(std::size_t count) const;
    Rect presetEntry(std::size_t index, std::size_t count) const;

    /// Where a value is typed: its place in the cell, wide enough for any value.
    Rect entryField(Parameter parameter) const;
    /// Where a complaint of some width about the typed text stands.
    Rect complaint(Parameter parameter, double textWidth) const;
};

}  // namespace orvalo::effect::ui
