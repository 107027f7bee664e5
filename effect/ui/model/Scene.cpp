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
    if (scene.values[Parameter::enabled] <= 0.0F || std::min(toThreshold, toRatio) > reach) {
        return Target::Kind::curve;
    }
    return toThreshold <= toRatio ? Target::Kind::thresholdPoint : Target::Kind::ratioPoint;
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
    if (layout.panel(Section::meters).area.contains(x, y)) {
        return {.kind = Kind::meters};
    }
    if (layout.pad.contains(x, y)) {
        return {.kind = padAreas(layout).keys.contains(x, y) ? Kind::noteKeys : Kind::pad};
    }
    for (std::size_t i = 0; i < shownParameterCount; ++i) {
        const auto parameter = static_cast<Parameter>(i);
        const Cell& cell = layout.cell(parameter);
        if (cell.value.contains(x, y)) {
            return {.kind = Kind::value, .parameter = parameter};
        }
        if (cell.area.contains(x, y)) {
            return {.kind = Kind::control, .parameter = parameter};
        }
    }
    return {};
}

}  // namespace orvalo::effect::ui
