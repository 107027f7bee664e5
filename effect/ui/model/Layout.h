#pragma once

#include <array>
#include <cstddef>

#include "effect/dsp/Parameter.h"
#include "effect/ui/model/Page.h"
#include "effect/ui/model/Rect.h"

namespace orvalo::effect::ui {

/// The panels of the lower half.
enum class Section : std::uint8_t { compressor, level, ducking, trigger, meters };
inline constexpr std::size_t sectionCount = 5;

/// The bars of the meter panel.
enum class Meter : std::uint8_t { input, output, reduction, ducking };
inline constexpr std::size_t meterCount = 4;

/// A panel: its area and the line of its title, at whose end the light is drawn.
struct Panel {
    Rect area;
    Rect title;
};

/// The areas of one control: name, knob and value. The Enabled switch has only `area`. All areas of
/// a control on a closed page are empty.
struct Cell {
    Rect area;
    Rect label;
    Rect dial;
    Rect value;
};

/// The positions of all parts for a window size. All distances are multiples of one unit, which is
/// 8 pixels at the natural size. The unit grows and shrinks more slowly than the window: a large
/// window gives most of its area to the graphs, and text stays legible in a small one.
struct Layout {
    /// The natural and the minimum size, in pixels at a scale of 1.
    static constexpr int naturalWidth = 640;
    static constexpr int naturalHeight = 480;
    static constexpr int leastWidth = 320;
    static constexpr int leastHeight = 240;
    /// The smallest legible text size, in pixels at a scale of 1.
    static constexpr double leastText = 8.0;

    /// width, height: in pixels. scale: the screen's scale factor. Every size has a layout; if it
    /// is too small, parts may be empty.
    static Layout of(double width, double height, double scale, Page page = Page::history);
    /// The same window with another page open.
    Layout with(Page other) const { return of(width, height, scale, other); }

    double width = 0.0;
    double height = 0.0;
    double scale = 1.0;
    Page page = Page::history;
    double unit = 0.0;
    /// Text height in pixels.
    double text = 0.0;
    /// The pointer distance for the whole range of a knob, in pixels.
    double dragTravel = 0.0;

    Rect header;
    /// As narrow as the mark alone where there is no room for the name.
    Rect wordmark;
    Rect undo;
    Rect redo;
    Rect previousPreset;
    Rect presetName;
    Rect nextPreset;
    Rect savePreset;
    /// The switch between A and B, and the button that copies one to the other.
    Rect sound;
    Rect copySound;
    Rect curve;
    /// The tabs of the pages, all together and each.
    Rect tabs;
    std::array<Rect, pageCount> tab{};
    Rect pageArea;
    /// The whole page, while the history is open.
    Rect history;
    /// The picture of the open page; empty where there is no room.
    Rect graph;
    Rect pad;
    std::array<Panel, sectionCount> panels{};
    std::array<Cell, parameterCount> cells{};
    std::array<Rect, meterCount> meters{};

    const Panel& panel(Section section) const { return panels[static_cast<std::size_t>(section)]; }
    const Cell& cell(Parameter parameter) const {
        return cells[static_cast<std::size_t>(parameter)];
    }
    const Rect& meter(Meter meter) const { return meters[static_cast<std::size_t>(meter)]; }

    Rect whole() const { return {0.0, 0.0, width, height}; }

    /// The first column of the preset list that is shown.
    std::size_t presetColumn = 0;

    // Of the list of `count` presets, which opens below the preset name.
    /// The whole list: as many columns as all presets need, or as many as there is room for.
    Rect presetList(std::size_t count) const;
    /// Empty while the entry's column is not shown.
    Rect presetEntry(std::size_t index, std::size_t count) const;
    /// The place of the marked preset's description.
    Rect presetDescription(std::size_t count) const;
    /// The button that shows the column before (-1) or behind (1); empty where there is none.
    Rect presetScroll(int direction, std::size_t count) const;
    /// Scrolls by columns: to the right when positive.
    void scrollPresets(int columns, std::size_t count);
    /// Scrolls until the entry is shown.
    void showPreset(std::size_t index, std::size_t count);
    /// The buttons at the end of an entry for a preset of the user's.
    Rect renameEntry(std::size_t index, std::size_t count) const;
    Rect deleteEntry(std::size_t index, std::size_t count) const;

    /// The text field for typing a value, centred on the value.
    Rect entryField(Parameter parameter) const;
    /// The box for a line about a field: above it, or below it where there is no room. textWidth:
    /// in pixels.
    Rect complaint(const Rect& field, double textWidth) const;

  private:
    class Arrangement;

    /// Places the tabs and what belongs to the open page.
    void placePage(const Rect& area);
    void placePageControls(const Rect& area);
    void placeCell(Parameter parameter, const Rect& area, double largestDial);
};

}  // namespace orvalo::effect::ui
