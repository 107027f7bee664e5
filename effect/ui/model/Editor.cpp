#include "effect/ui/model/Editor.h"

#include "effect/ui/model/ValueText.h"

namespace orvalo::effect::ui {

void Editor::show(Parameter parameter, float value) {
    scene_.values.set(parameter, value);
    scene_.markChanged(parameter);
    scene_.markChanged(Part::curve);
    if (parameter == Parameter::enabled) {
        scene_.markAllChanged();
    }
    if (scene_.presets.update(scene_.values)) {
        scene_.markChanged(Part::header);
    }
}

void Editor::set(Parameter parameter, float value) {
    if (scene_.values[parameter] == value) {
        return;
    }
    show(parameter, value);
    host_.write(parameter, scene_.values[parameter]);
}

void Editor::setOnce(Parameter parameter, float value) {
    if (scene_.values[parameter] == value) {
        return;
    }
    host_.grab(parameter, true);
    set(parameter, value);
    host_.grab(parameter, false);
}

void Editor::receive(Parameter parameter, float value) {
    if (parameter != held_ && scene_.values[parameter] != value) {
        show(parameter, value);
    }
}

void Editor::hold(Parameter parameter) {
    release();
    held_ = parameter;
    host_.grab(parameter, true);
    scene_.markChanged(parameter);
}

void Editor::release() {
    if (held_) {
        host_.grab(*held_, false);
        scene_.markChanged(*held_);
        held_.reset();
    }
}

void Editor::choosePreset(std::size_t index) {
    // A copy: a host may answer a write by changing a parameter at once.
    const Preset preset = scene_.presets.presets().at(index);
    scene_.presets.choose(index);
    for (const auto& [parameter, value] : preset.values) {
        host_.grab(parameter, true);
        show(parameter, value);
        host_.write(parameter, scene_.values[parameter]);
        host_.grab(parameter, false);
    }
    scene_.markChanged(Part::header);
}

void Editor::stepPreset(int direction) {
    if (const auto next = scene_.presets.neighbour(direction)) {
        choosePreset(*next);
    }
}

void Editor::openList() {
    if (!scene_.presets.presets().empty()) {
        scene_.list = scene_.presets.chosen().value_or(0);
        scene_.markAllChanged();
    }
}

void Editor::closeList() {
    scene_.list.reset();
    scene_.markAllChanged();
}

void Editor::markEntry(std::size_t index) {
    if (scene_.list && *scene_.list != index) {
        scene_.list = index;
        scene_.markChanged(Part::header);
    }
}

void Editor::beginEntry(Parameter parameter) {
    scene_.entry = ValueEntry{
        .parameter = parameter,
        .entry = TextEntry(valueText(parameter, scene_.values[parameter])),
        .complaint = {},
    };
    scene_.markAllChanged();
}

bool Editor::commitEntry() {
    if (!scene_.entry) {
        return true;
    }
    const Parameter parameter = scene_.entry->parameter;
    const auto typed = typedValue(parameter, scene_.entry->entry.text());
    if (!typed.value) {
        scene_.entry->complaint = typed.complaint;
        scene_.markAllChanged();
        return false;
    }
    cancelEntry();
    setOnce(parameter, *typed.value);
    return true;
}

void Editor::cancelEntry() {
    if (scene_.entry) {
        scene_.entry.reset();
        scene_.markAllChanged();
    }
}

void Editor::entryChanged() {
    if (!scene_.entry->complaint.empty()) {
        scene_.entry->complaint.clear();
        scene_.markAllChanged();
    }
    scene_.markChanged(scene_.entry->parameter);
}

void Editor::markChanged(const Target& target) {
    using Kind = Target::Kind;
    if (target.kind == Kind::control || target.kind == Kind::value) {
        scene_.markChanged(target.parameter);
    } else if (target.kind == Kind::curve || target.kind == Kind::thresholdPoint ||
               target.kind == Kind::ratioPoint) {
        scene_.markChanged(Part::curve);
    } else if (target.kind == Kind::history || target.kind == Kind::historySpan) {
        scene_.markChanged(Part::history);
    } else if (target.kind == Kind::meters) {
        scene_.markChanged(Part::truePeak);
    } else if (target.kind == Kind::pad || target.kind == Kind::noteKeys) {
        scene_.markChanged(Part::pad);
    } else if (target.kind != Kind::nothing) {
        scene_.markChanged(Part::header);
    }
}

void Editor::hover(const Target& target) {
    if (target != scene_.hovered) {
        markChanged(scene_.hovered);
        scene_.hovered = target;
        markChanged(target);
    }
}

void Editor::markFocusChanged() {
    if (const auto parameter = scene_.focusedControl()) {
        scene_.markChanged(*parameter);
    } else if (scene_.focus == padFocus) {
        scene_.markChanged(Part::pad);
    } else if (scene_.focus == historyFocus) {
        scene_.markChanged(Part::history);
    } else if (scene_.focus == metersFocus) {
        scene_.markChanged(Part::truePeak);
    } else {
        scene_.markChanged(Part::header);
    }
}

void Editor::stepHistorySpan(int direction) {
    const std::size_t count = History::spans.size();
    const std::size_t next =
        (scene_.history.span() + count + (direction > 0 ? 1 : count - 1)) % count;
    scene_.history.setSpan(next);
    if (scene_.pausedHistory) {
        scene_.pausedHistory->setSpan(next);
    }
    scene_.markChanged(Part::history);
}

void Editor::toggleHistoryPause() {
    if (scene_.pausedHistory) {
        scene_.pausedHistory.reset();
    } else {
        scene_.pausedHistory = scene_.history;
    }
    scene_.markChanged(Part::history);
}

void Editor::resetMeters() {
    scene_.meterMemory.reset();
    scene_.markChanged(Part::meters);
    scene_.markChanged(Part::truePeak);
}

void Editor::focus(std::size_t place, bool shown) {
    if (place != scene_.focus || shown != scene_.showsFocus) {
        markFocusChanged();
        scene_.focus = place;
        scene_.showsFocus = shown;
        markFocusChanged();
    }
}

void Editor::setHasKeyboard(bool has) {
    if (has != scene_.hasKeyboard) {
        scene_.hasKeyboard = has;
        markFocusChanged();
    }
}

}  // namespace orvalo::effect::ui
