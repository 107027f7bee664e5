#include "effect/ui/model/GraphAreas.h"

#include <algorithm>
#include <cmath>

#include "effect/ui/model/TransferCurve.h"

namespace orvalo::effect::ui {

namespace {

CurvePoint pointAt(const Scene& scene, float level) {
    const CurvePlot plot(scene.layout);
    const Rect& area = plot.area();
    const double radius = 0.5 * scene.layout.unit;
    const auto within = [radius](double value, double low, double high) {
        return std::max(low + radius, std::min(value, high - radius));
    };
    return {within(plot.x(level), area.x, area.right()),
            within(plot.y(steadyOutput(scene.values, level)), area.y, area.bottom())};
}

}  // namespace

HistoryAreas historyAreas(const Layout& layout) {
    const Rect& panel = layout.history;
    const double axis = 2.4 * layout.text;
    const double legend = 1.8 * layout.text;
    const double margin = layout.unit;
    const double gap = layout.unit;
    const double x = std::round(panel.x + axis);
    const double width = std::max(0.0, panel.right() - margin - x);
    const double height = std::max(0.0, panel.height - margin - gap - legend);
    constexpr double stripShare = 0.32;
    const double strip = std::round(stripShare * height);
    HistoryAreas areas;
    areas.levels = {x, panel.y + margin, width, height - strip};
    areas.strip = {x, areas.levels.bottom() + gap, width, strip};
    const double span = std::min(width, 3.2 * layout.text);
    areas.legend = {x, areas.strip.bottom(), std::max(0.0, width - span - 0.5 * layout.unit),
                    legend};
    areas.span = {panel.right() - margin - span, areas.strip.bottom() + 0.15 * legend, span,
                  0.8 * legend};
    return areas;
}

Rect toggleArea(const Layout& layout, Parameter parameter) {
    const Cell& cell = layout.cell(parameter);
    const double high = std::min(1.6 * layout.text, cell.value.y - cell.label.bottom());
    const double wide = std::min(1.9 * high, 0.8 * cell.area.width);
    const double middle = 0.5 * (cell.label.bottom() + cell.value.y);
    return Rect{cell.area.centerX() - 0.5 * wide, middle - 0.5 * high, wide, high}.sharp();
}

std::vector<Rect> segmentAreas(const Layout& layout, Parameter parameter) {
    const Cell& cell = layout.cell(parameter);
    const auto count = control(parameter).choices.size();
    const double room = std::max(0.0, cell.area.bottom() - cell.label.bottom());
    const double least = 1.25 * layout.text;
    const bool hasAll = room >= static_cast<double>(count) * least;
    const std::size_t shown = hasAll ? count : 1;
    const double high = std::min(1.7 * layout.text, room / static_cast<double>(shown));
    const double wide =
        std::max(0.0, std::min(cell.area.width - 0.5 * layout.unit, 7.5 * layout.text));
    const double x = cell.area.centerX() - 0.5 * wide;
    const double y = cell.label.bottom() + 0.5 * (room - static_cast<double>(shown) * high);
    std::vector<Rect> areas;
    for (std::size_t i = 0; i < shown; ++i) {
        areas.push_back(Rect{x, y + static_cast<double>(i) * high, wide, high}.sharp());
    }
    return areas;
}

PadAreas padAreas(const Layout& layout) {
    const Rect inner = layout.pad.inset(layout.unit, layout.unit);
    const double keys = std::min(0.3 * inner.height, 4.0 * layout.unit);
    const double gap = 0.75 * layout.unit;
    return {{inner.x, inner.y, inner.width, std::max(0.0, inner.height - keys - gap)},
            {inner.x, inner.bottom() - keys, inner.width, keys}};
}

Rect truePeakArea(const Layout& layout) {
    const Rect& title = layout.panel(Section::meters).title;
    const double left = std::min(title.width, 5.5 * layout.text);
    return {title.x + left, title.y, title.width - left, title.height};
}

CurvePoint thresholdPoint(const Scene& scene) {
    return pointAt(scene, scene.values[Parameter::threshold]);
}

CurvePoint ratioPoint(const Scene& scene) {
    return pointAt(scene, ratioPointLevel);
}

double curvePointReach(const Layout& layout) {
    return std::max(6.0, 1.25 * layout.unit);
}

}  // namespace orvalo::effect::ui
