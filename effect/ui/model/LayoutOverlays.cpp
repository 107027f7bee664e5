// The layout of the parts that are drawn above the others: preset list, text field, complaint.

#include <algorithm>
#include <cmath>

#include "effect/ui/model/Layout.h"

namespace orvalo::effect::ui {

namespace {

struct Grid {
    std::size_t rows;
    std::size_t columns;
    /// The columns for which there is room.
    std::size_t shown;
    double rowHeight;

    bool scrolls() const { return shown < columns; }
};

/// The fewest columns that show all entries in the height. Where there is no room for so many, all
/// columns but the last are full.
Grid gridFor(std::size_t count, double height, double rowHeight, std::size_t mostColumns) {
    const auto fitting =
        std::max<std::size_t>(1, static_cast<std::size_t>(std::max(0.0, height / rowHeight)));
    const std::size_t columns = std::max<std::size_t>(1, (count + fitting - 1) / fitting);
    const std::size_t shown = std::min(columns, mostColumns);
    return {shown < columns ? fitting : (count + columns - 1) / columns, columns, shown, rowHeight};
}

/// Two lines for the description.
double descriptionHeight(const Layout& layout) {
    return std::round(3.0 * layout.text);
}

Grid presetGrid(const Layout& layout, std::size_t count) {
    const double room =
        layout.height - layout.presetName.bottom() - 2.0 * layout.unit - descriptionHeight(layout);
    constexpr double leastColumn = 13.0;
    const auto most = static_cast<std::size_t>(layout.width / (leastColumn * layout.text));
    return gridFor(count, room, std::round(1.9 * layout.text), std::max<std::size_t>(1, most));
}

/// The width of a button that scrolls.
double scrollWidth(const Layout& layout, const Grid& grid) {
    return grid.scrolls() ? std::round(2.0 * layout.unit) : 0.0;
}

}  // namespace

Rect Layout::presetList(std::size_t count) const {
    const Grid grid = presetGrid(*this, count);
    const double padding = 0.5 * unit;
    const double column = std::max(presetName.width, 20.0 * unit);
    const double wide =
        std::min(width, std::max(column * static_cast<double>(grid.shown), 27.0 * text));
    const double x = std::clamp(presetName.centerX() - 0.5 * wide, 0.0, width - wide);
    return {std::round(x), presetName.bottom() + std::round(0.5 * unit), std::round(wide),
            std::round(static_cast<double>(grid.rows) * grid.rowHeight + 2.0 * padding +
                       descriptionHeight(*this))};
}

Rect Layout::presetEntry(std::size_t index, std::size_t count) const {
    const Grid grid = presetGrid(*this, count);
    const std::size_t column = index / grid.rows;
    if (column < presetColumn || column >= presetColumn + grid.shown) {
        return {};
    }
    const std::size_t row = index % grid.rows;
    const Rect list = presetList(count).inset(0.5 * unit + scrollWidth(*this, grid), 0.5 * unit);
    const double wide = list.width / static_cast<double>(grid.shown);
    return {list.x + static_cast<double>(column - presetColumn) * wide,
            list.y + static_cast<double>(row) * grid.rowHeight, wide, grid.rowHeight};
}

Rect Layout::presetScroll(int direction, std::size_t count) const {
    const Grid grid = presetGrid(*this, count);
    if (direction < 0 ? presetColumn == 0 : presetColumn + grid.shown >= grid.columns) {
        return {};
    }
    const Rect list = presetList(count).inset(0.5 * unit, 0.5 * unit);
    const double wide = scrollWidth(*this, grid);
    return {direction < 0 ? list.x : list.right() - wide, list.y, wide,
            static_cast<double>(grid.rows) * grid.rowHeight};
}

void Layout::scrollPresets(int columns, std::size_t count) {
    const Grid grid = presetGrid(*this, count);
    const auto last = static_cast<long>(grid.columns - grid.shown);
    const long wanted = static_cast<long>(presetColumn) + columns;
    presetColumn = static_cast<std::size_t>(std::clamp(wanted, 0L, last));
}

void Layout::showPreset(std::size_t index, std::size_t count) {
    const Grid grid = presetGrid(*this, count);
    const std::size_t column = index / grid.rows;
    if (column < presetColumn) {
        presetColumn = column;
    } else if (column >= presetColumn + grid.shown) {
        presetColumn = column + 1 - grid.shown;
    }
    scrollPresets(0, count);
}

Rect Layout::presetDescription(std::size_t count) const {
    const Rect list = presetList(count);
    const double high = descriptionHeight(*this);
    return {list.x + 1.5 * unit, list.bottom() - 0.5 * unit - high,
            std::max(0.0, list.width - 3.0 * unit), high};
}

Rect Layout::deleteEntry(std::size_t index, std::size_t count) const {
    const Rect entry = presetEntry(index, count);
    return {entry.right() - entry.height, entry.y, entry.height, entry.height};
}

Rect Layout::renameEntry(std::size_t index, std::size_t count) const {
    const Rect entry = presetEntry(index, count);
    return {entry.right() - 2.0 * entry.height, entry.y, entry.height, entry.height};
}

Rect Layout::entryField(Parameter parameter) const {
    const Rect& value = cell(parameter).value;
    const double wide = std::min(width, std::max(value.width, 7.0 * text));
    const double high = 1.7 * text;
    const double x = std::clamp(value.centerX() - 0.5 * wide, 0.0, width - wide);
    const double y = std::clamp(value.centerY() - 0.5 * high, 0.0, std::max(0.0, height - high));
    return {std::round(x), std::round(y), std::round(wide), std::round(high)};
}

Rect Layout::complaint(const Rect& field, double textWidth) const {
    const double wide = std::min(width, textWidth + 2.0 * unit);
    const double high = std::round(2.0 * text);
    const double gap = std::round(0.5 * unit);
    const double x = std::clamp(field.centerX() - 0.5 * wide, 0.0, width - wide);
    const double above = field.y - high - gap;
    return {std::round(x), above < 0.0 ? field.bottom() + gap : above, std::round(wide), high};
}

}  // namespace orvalo::effect::ui
