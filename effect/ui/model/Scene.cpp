#include "effect/ui/model/Scene.h"

namespace orvalo::effect::ui {

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
    for (std::size_t i = 0; i < parameterCount; ++i) {
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
