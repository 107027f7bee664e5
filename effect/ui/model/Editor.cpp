#include "effect/ui/model/Editor.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "effect/ui/model/ValueText.h"

namespace orvalo::effect::ui {

void Editor::show(Parameter parameter, float value) {
    const ParameterValues before = scene_.values;
    scene_.values.set(parameter, value);
    scene_.markChanged(parameter);
    for (std::size_t i = 0; i < parameterCount; ++i) {
        const auto other = static_cast<Parameter>(i);
        if (isInForce(before, other) != isInForce(scene_.values, other)) {
            scene_.markChanged(other);
        }
    }
    if (pageOf(parameter)) {
        scene_.markChanged(Part::tabs);
    }
    scene_.markChanged(Part::graph);
    scene_.markChanged(Part::curve);
    if (parameter == Parameter::enabled) {
        scene_.markAllChanged();
    }
    if (scene_.presets.update(scene_.values)) {
        scene_.markChanged(Part::header);
    }
}

void Editor::beginStep() {
    if (depth_++ == 0) {
        turned_.reset();
        edit_.emplace();
        edit_->chosen.before = scene_.presets.chosenKey();
    }
}

bool Editor::endStep() {
    if (--depth_ > 0) {
        return false;
    }
    edit_->chosen.after = scene_.presets.chosenKey();
    const bool isChange = edit_->tidy();
    if (isChange) {
        scene_.edits.add(std::move(*edit_));
        scene_.markChanged(Part::header);
    }
    edit_.reset();
    return isChange;
}

void Editor::write(Parameter parameter, float value) {
    const float before = scene_.values[parameter];
    show(parameter, value);
    if (edit_) {
        edit_->note(parameter, before, scene_.values[parameter]);
    }
    host_.write(parameter, scene_.values[parameter]);
}

void Editor::writeGrabbed(Parameter parameter, float value) {
    host_.grab(parameter, true);
    write(parameter, value);
    host_.grab(parameter, false);
}

void Editor::set(Parameter parameter, float value) {
    if (scene_.values[parameter] == value) {
        return;
    }
    write(parameter, value);
}

bool Editor::setOnce(Parameter parameter, float value) {
    if (scene_.values[parameter] == value) {
        return false;
    }
    beginStep();
    writeGrabbed(parameter, value);
    return endStep();
}

void Editor::turn(Parameter parameter, float value) {
    const bool continues = turned_ == parameter;
    if (setOnce(parameter, value) && (!continues || scene_.edits.joinLast())) {
        turned_ = parameter;
    }
}

void Editor::receive(Parameter parameter, float value) {
    if (parameter != held_ && scene_.values[parameter] != value) {
        show(parameter, value);
    }
}

void Editor::hold(Parameter parameter) {
    release();
    beginStep();
    held_ = parameter;
    host_.grab(parameter, true);
    scene_.markChanged(parameter);
}

void Editor::release() {
    if (held_) {
        host_.grab(*held_, false);
        scene_.markChanged(*held_);
        held_.reset();
        endStep();
    }
}

void Editor::activate(Focus field) {
    switch (field) {
        case Focus::undo:
            return undo();
        case Focus::redo:
            return redo();
        case Focus::previousPreset:
            return stepPreset(-1);
        case Focus::presetName:
            return openList();
        case Focus::nextPreset:
            return stepPreset(1);
        case Focus::savePreset:
            return beginSaving();
        case Focus::sound:
            return switchSound();
        case Focus::copySound:
            return copySound();
        case Focus::firstControl:
            break;
    }
}

void Editor::choosePreset(std::size_t index) {
    beginStep();
    // A copy: a host may answer a write by changing a parameter at once.
    const Preset preset = scene_.presets.presets().at(index);
    scene_.presets.choose(index);
    for (const auto& [parameter, value] : preset.values) {
        writeGrabbed(parameter, value);
    }
    scene_.presets.update(scene_.values);
    scene_.markChanged(Part::header);
    endStep();
}

void Editor::stepPreset(int direction) {
    choosePreset(scene_.presets.neighbour(direction));
}

void Editor::readPresets() {
    scene_.presets.replace(store_.read());
    scene_.presets.update(scene_.values);
    if (scene_.list) {
        scene_.list = std::min(*scene_.list, scene_.presets.presets().size() - 1);
    }
    showMarked();
    scene_.markAllChanged();
}

void Editor::openList() {
    readPresets();
    scene_.list = scene_.presets.chosen().value_or(0);
    showMarked();
}

void Editor::showMarked() {
    if (scene_.list) {
        scene_.layout.showPreset(*scene_.list, scene_.presets.presets().size());
    }
}

void Editor::scrollList(int columns) {
    scene_.layout.scrollPresets(columns, scene_.presets.presets().size());
    scene_.markChanged(Part::header);
}

void Editor::closeList() {
    scene_.list.reset();
    scene_.notice.clear();
    scene_.markAllChanged();
}

void Editor::markEntry(std::size_t index) {
    if (scene_.list && *scene_.list != index) {
        scene_.list = index;
        scene_.notice.clear();
        showMarked();
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
    if (scene_.isNaming()) {
        return commitName();
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
    scene_.entry->replaced.clear();
    if (!scene_.entry->complaint.empty()) {
        scene_.entry->complaint.clear();
        scene_.markAllChanged();
    }
    if (scene_.isNaming()) {
        scene_.markChanged(Part::header);
    } else {
        scene_.markChanged(scene_.entry->parameter);
    }
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
    } else if (target.kind == Kind::tab) {
        scene_.markChanged(Part::tabs);
    } else if (target.kind == Kind::graph) {
        scene_.markChanged(Part::graph);
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
        turned_.reset();
        markChanged(scene_.hovered);
        scene_.hovered = target;
        markChanged(target);
    }
}

void Editor::markFocusChanged() {
    if (const auto parameter = scene_.focusedControl()) {
        scene_.markChanged(*parameter);
    } else if (scene_.focus == tabsFocus) {
        scene_.markChanged(Part::tabs);
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

void Editor::advance(Parameter parameter) {
    const float next = std::round(scene_.values[parameter]) + 1.0F;
    setOnce(parameter, next > range(parameter).maximum ? range(parameter).minimum : next);
}

void Editor::openPage(Page page) {
    cancelEntry();
    scene_.layout = scene_.layout.with(page == scene_.layout.page ? Page::history : page);
    // A control that is no longer shown cannot have the focus.
    const auto order = scene_.tabOrder();
    if (std::ranges::count(order, scene_.focus) == 0) {
        scene_.focus = tabsFocus;
    }
    scene_.markAllChanged();
}

void Editor::stepPage(int direction) {
    const auto now = static_cast<std::size_t>(scene_.layout.page);
    openPage(static_cast<Page>((now + (direction > 0 ? 1 : pageCount - 1)) % pageCount));
}

void Editor::stepHistorySpan(int direction) {
    const std::size_t count = History::spans.size();
    const std::size_t next = (scene_.history.span() + (direction > 0 ? 1 : count - 1)) % count;
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
        if (place != scene_.focus) {
            turned_.reset();
        }
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
