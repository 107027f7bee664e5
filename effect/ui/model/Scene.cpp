#include "effect/ui/model/Scene.h"

namespace orvalo::effect::ui {

Target Scene::targetAt(double x, double y) const {
    using Kind = Target::Kind;
    if (list) {
        const std::size_t count = presets.presets().size();
        for (std::size_t i = 0; i < count; ++i) {
            if (layout.presetEntry(i, count).contains(x, y)) {
                return {.kind = Kind::presetEntry, .entry = i};
            }
        }
        const bool isInside = layout.presetList(count).contains(x, y);
        return {.kind = isInside ? Kind::nothing : Kind::outsideList};
    }
    if (layout.previousPreset.contains(x, y)) {
        return {.kind = Kind::previousPreset};
    }
    if (layout.presetName.contains(x, y)) {
        return {.kind = Kind::presetName};
    }
    if (layout.nextPreset.contains(x, y)) {
        return {.kind = Kind::nextPreset};
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
