// The layout of the tabs and of the page that is open.

#include <algorithm>
#include <cmath>
#include <cstring>

#include "effect/ui/model/Layout.h"

namespace orvalo::effect::ui {

namespace {

/// A control needs this height, in text heights, and this width to show its name in full.
constexpr double leastRow = 5.2;
constexpr double roomyCell = 3.8;
/// In units: as large as the knobs below the page.
constexpr double largestDial = 6.0;
/// The least height of a picture, in text heights.
constexpr double leastGraph = 3.0;

double tabWeight(std::size_t page) {
    constexpr std::size_t least = 7;
    constexpr std::size_t around = 2;
    const std::size_t letters = std::strlen(nameOf(static_cast<Page>(page)).name);
    return static_cast<double>(std::max(letters, least) + around);
}

}  // namespace

void Layout::placePage(const Rect& area) {
    const double high = std::min(area.height, std::max(2.25 * unit, 1.6 * text));
    const double gap = 0.5 * unit;
    tabs = Rect{area.x, area.y, area.width, high}.sharp();
    double weights = 0.0;
    for (std::size_t i = 0; i < pageCount; ++i) {
        weights += tabWeight(i);
    }
    const double share = (area.width + gap) / weights;
    double x = area.x;
    for (std::size_t i = 0; i < pageCount; ++i) {
        const double wide = share * tabWeight(i);
        tab.at(i) = Rect{x, area.y, std::max(0.0, wide - gap), high}.sharp();
        x += wide;
    }
    const double top = area.y + high + gap;
    pageArea = Rect{area.x, top, area.width, std::max(0.0, area.bottom() - top)}.sharp();
    if (page == Page::history) {
        history = pageArea;
    } else {
        placePageControls(pageArea.inset(0.5 * unit, 0.5 * unit));
    }
}

void Layout::placePageControls(const Rect& area) {
    const auto parameters = parametersOf(page);
    const auto count = parameters.size();
    const double row = leastRow * text;
    const double graphRoom = hasGraph(page) ? leastGraph * text + 0.5 * unit : 0.0;
    const bool isNarrow = area.width < static_cast<double>(count) * roomyCell * text;
    const bool isRoomy = area.height >= 2.0 * row + graphRoom;
    const std::size_t rows = isRoomy && (isNarrow || !hasGraph(page)) ? 2 : 1;
    const std::size_t columns = (count + rows - 1) / rows;
    const auto rowsHigh = static_cast<double>(rows);
    double controls = area.height;
    if (hasGraph(page) && area.height >= rowsHigh * row + graphRoom) {
        const double share = rows == 1 ? 0.45 : 0.65;
        controls =
            rowsHigh * std::clamp(share * area.height / rowsHigh, row, std::max(row, 11.0 * unit));
        graph = Rect{area.x + 0.5 * unit, area.y + 0.5 * unit, area.width - unit,
                     area.height - controls - unit}
                    .sharp();
    }
    const double gap = rows == 1 ? 0.0 : 0.5 * unit;
    const double high = (controls - gap) / rowsHigh;
    const double wide = area.width / static_cast<double>(columns);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t line = i / columns;
        const auto across = static_cast<double>(i % columns);
        const auto down = static_cast<double>(line);
        placeCell(
            parameters[i],
            Rect{area.x + across * wide, area.bottom() - controls + down * (high + gap), wide, high}
                .sharp(),
            largestDial * unit);
    }
}

}  // namespace orvalo::effect::ui
