// The layout of the parts that are drawn above the others: preset list, text field, complaint.

#include <algorithm>
#include <cmath>

#include "effect/ui/model/Layout.h"

namespace orvalo::effect::ui {

namespace {

struct Grid {
    std::size_t rows;
    std::size_t columns;
    double rowHeight;
};

/// The fewest columns that show all entries in the height.
Grid gridFor(std::size_t count, double height, double rowHeight) {
    const auto fitting =
        std::max<std::size_t>(1, static_cast<std::size_t>(std::max(0.0, height / rowHeight)));
    const std::size_t columns = std::max<std::size_t>(1, (count + fitting - 1) / fitting);
    return {(count + columns - 1) / columns, columns, rowHeight};
}

Grid presetGrid(const Layout& layout, std::size_t count) {
    const double room = layout.height - layout.presetName.bottom() - 2.0 * layout.unit;
    return gridFor(count, room, std::round(1.9 * layout.text));
}

}  // namespace

Rect Layout::presetList(std::size_t count) const {
    const Grid grid = presetGrid(*this, count);
    const double padding = 0.5 * unit;
    const double wide = std::min(
        width, std::max(presetName.width, 20.0 * unit) * static_cast<double>(grid.columns));
    const double x = std::clamp(presetName.centerX() - 0.5 * wide, 0.0, width - wide);
    return {std::round(x), presetName.bottom() + std::round(0.5 * unit), std::round(wide),
            std::round(static_cast<double>(grid.rows) * grid.rowHeight + 2.0 * padding)};
}

Rect Layout::presetEntry(std::size_t index, std::size_t count) const {
    const Grid grid = presetGrid(*this, count);
    const Rect list = presetList(count).inset(0.5 * unit, 0.5 * unit);
    const double wide = list.width / static_cast<double>(grid.columns);
    const std::size_t column = index / grid.rows;
    const std::size_t row = index % grid.rows;
    return {list.x + static_cast<double>(column) * wide,
            list.y + static_cast<double>(row) * grid.rowHeight, wide, grid.rowHeight};
}

Rect Layout::entryField(Parameter parameter) const {
    const Rect& value = cell(parameter).value;
    const double wide = std::min(width, std::max(value.width, 7.0 * text));
    const double high = 1.7 * text;
    const double x = std::clamp(value.centerX() - 0.5 * wide, 0.0, width - wide);
    const double y = std::clamp(value.centerY() - 0.5 * high, 0.0, std::max(0.0, height - high));
    return {std::round(x), std::round(y), std::round(wide), std::round(high)};
}

Rect Layout::complaint(Parameter parameter, double textWidth) const {
    const Rect field = entryField(parameter);
    const double wide = std::min(width, textWidth + 2.0 * unit);
    const double high = std::round(2.0 * text);
    const double x = std::clamp(field.centerX() - 0.5 * wide, 0.0, width - wide);
    return {std::round(x), std::max(0.0, field.y - high - std::round(0.5 * unit)), std::round(wide),
            high};
}

}  // namespace orvalo::effect::ui
