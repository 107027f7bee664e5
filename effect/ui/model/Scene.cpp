#include "effect/ui/model/Scene.h"

#include <cmath>

#include "effect/ui/model/GraphAreas.h"

namespace orvalo::effect::ui {

namespace {

Target::Kind curveTargetAt(const Scene& scene, double x, double y) {
    const double reach = curvePointReach(scene.layout);
    const auto distance = [x, y](const CurvePoint& point) {
        return std::hypot(point.x - x, point.y - y);
    };
    const double toThreshold = distance(thresholdPoint(scene));
    const double toRatio = distance(ratioPoint(scene));
    if (!scene.values.isOn(Parameter::enabled) || std::min(toThreshold, toRatio) > reach) {
        return Target::Kind::curve;
    }
    return toThreshold <= toRatio ? Target::Kind::thresholdPoint : Target::Kind::ratioPoint;
}

/// A place beside the fields belongs to the nearest one.
Target segmentTargetAt(const Layout& layout, Parameter parameter, double y) {
    const auto areas = segmentAreas(layout, parameter);
    std::size_t entry = 0;
    while (entry + 1 < areas.size() && y >= areas[entry].bottom()) {
        ++entry;
    }
    return {.kind = Target::Kind::control, .parameter = parameter, .entry = entry};
}

}  // namespace

std::string Scene::entryLine() const {
    if (!entry) {
        return {};
    }
    if (!entry->complaint.empty() || !isNaming()) {
        return entry->complaint;
    }
    return entry->purpose == ValueEntry::Purpose::renamePreset
               ? "New name: Enter renames, Escape cancels"
               : "Name of the preset: Enter saves, Escape cancels";
}

std::vector<std::size_t> Scene::tabOrder() const {
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < headerFields.size(); ++i) {
        order.push_back(i);
    }
    for (std::size_t i = 0; i < parameterCount; ++i) {
        const auto parameter = static_cast<Parameter>(i);
        if (!pageOf(parameter)) {
            order.push_back(focusOf(parameter));
        }
    }
    order.push_back(tabsFocus);
    for (const Parameter parameter : parametersOf(layout.page)) {
        order.push_back(focusOf(parameter));
    }
    order.push_back(padFocus);
    if (layout.page == Page::history) {
        order.push_back(historyFocus);
    }
    order.push_back(metersFocus);
    return order;
}

Target Scene::targetAt(double x, double y) const {
    using Kind = Target::Kind;
    if (list) {
        const std::size_t count = presets.presets().size();
        for (std::size_t i = 0; i < count; ++i) {
            if (!layout.presetEntry(i, count).contains(x, y)) {
                continue;
            }
            const bool isUser = presets.presets()[i].isUser;
            if (isUser && layout.deleteEntry(i, count).contains(x, y)) {
                return {.kind = Kind::deleteEntry, .entry = i};
            }
            if (isUser && layout.renameEntry(i, count).contains(x, y)) {
                return {.kind = Kind::renameEntry, .entry = i};
            }
            return {.kind = Kind::presetEntry, .entry = i};
        }
        for (std::size_t i = 0; i < 2; ++i) {
            if (layout.presetScroll(i == 0 ? -1 : 1, count).contains(x, y)) {
                return {.kind = Kind::presetScroll, .entry = i};
            }
        }
        const bool isInside = layout.presetList(count).contains(x, y);
        return {.kind = isInside ? Kind::nothing : Kind::outsideList};
    }
    for (const auto& field : headerFields) {
        if ((layout.*field.area).contains(x, y)) {
            return {.kind = field.kind};
        }
    }
    if (layout.curve.contains(x, y)) {
        return {.kind = curveTargetAt(*this, x, y)};
    }
    if (layout.history.contains(x, y)) {
        const bool isSpan = historyAreas(layout).span.contains(x, y);
        return {.kind = isSpan ? Kind::historySpan : Kind::history};
    }
    for (std::size_t i = 0; i < pageCount; ++i) {
        if (layout.tab.at(i).contains(x, y)) {
            return {.kind = Kind::tab, .entry = i};
        }
    }
    if (layout.graph.contains(x, y)) {
        return {.kind = Kind::graph, .entry = static_cast<std::size_t>(layout.page)};
    }
    if (layout.panel(Section::meters).area.contains(x, y)) {
        return {.kind = Kind::meters};
    }
    if (layout.pad.contains(x, y)) {
        return {.kind = padAreas(layout).keys.contains(x, y) ? Kind::noteKeys : Kind::pad};
    }
    for (std::size_t i = 0; i < parameterCount; ++i) {
        const auto parameter = static_cast<Parameter>(i);
        const Cell& cell = layout.cell(parameter);
        if (!cell.area.contains(x, y)) {
            continue;
        }
        switch (lookOf(parameter)) {
            case Look::knob:
                return {.kind = cell.value.contains(x, y) ? Kind::value : Kind::control,
                        .parameter = parameter};
            case Look::toggle:
                return {.kind = Kind::control, .parameter = parameter};
            case Look::segments:
                return segmentTargetAt(layout, parameter, y);
        }
    }
    return {};
}

}  // namespace orvalo::effect::ui
