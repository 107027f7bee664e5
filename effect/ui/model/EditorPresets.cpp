// The parts of the editor that concern the user's presets, the comparison and undo.

#include <algorithm>
#include <utility>

#include "effect/ui/model/Editor.h"

namespace orvalo::effect::ui {

namespace {

std::string inQuotes(const std::string& name) {
    return "\"" + name + "\"";
}

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

// Undo.

void Editor::undo() {
    if (!held_) {
        if (const auto edit = scene_.edits.undo()) {
            apply(*edit, true);
        }
    }
}

void Editor::redo() {
    if (!held_) {
        if (const auto edit = scene_.edits.redo()) {
            apply(*edit, false);
        }
    }
}

void Editor::apply(const Edit& edit, bool isUndone) {
    const auto wanted = [isUndone](const auto& change) {
        return isUndone ? change.before : change.after;
    };
    turned_.reset();
    scene_.notice.clear();
    if (edit.preset) {
        const auto from = isUndone ? edit.preset->after : edit.preset->before;
        const auto to = wanted(*edit.preset);
        const auto complaint = replacePreset(from, to);
        if (!complaint.empty()) {
            scene_.notice = complaint;
        } else if (to) {
            scene_.notice = inQuotes(to->name) + (isUndone ? " is restored" : " is saved");
        } else {
            scene_.notice = inQuotes(from->name) + " is deleted";
        }
    }
    if (edit.comparison) {
        scene_.comparison = wanted(*edit.comparison);
    }
    for (const auto& value : edit.values) {
        writeGrabbed(value.parameter, wanted(value));
    }
    scene_.presets.choose(wanted(edit.chosen));
    scene_.presets.update(scene_.values);
    scene_.markAllChanged();
}

// The user's presets.

/// Replaces a preset in the store and in the list; both may be absent. Returns a complaint.
std::string Editor::replacePreset(const std::optional<Preset>& from,
                                  const std::optional<Preset>& to) {
    std::string complaint;
    if (to) {
        complaint = store_.save(*to, from.value_or(*to).name);
    } else if (from) {
        complaint = store_.remove(from->name);
    }
    const auto marked = scene_.list;
    readPresets();
    if (const auto place = to && marked ? scene_.presets.find({to->name, true}) : std::nullopt) {
        scene_.list = place;
        showMarked();
    }
    return complaint;
}

void Editor::setNotice(std::string notice) {
    if (scene_.notice != notice) {
        scene_.notice = std::move(notice);
        scene_.markAllChanged();
    }
}

void Editor::beginSaving() {
    readPresets();
    const auto chosen = scene_.presets.chosenKey();
    scene_.entry = ValueEntry{
        .parameter = Parameter::enabled,
        .entry = TextEntry(chosen && chosen->isUser ? chosen->name : "", TextEntry::longestName),
        .complaint = {},
        .purpose = ValueEntry::Purpose::savePreset,
    };
}

void Editor::beginRenaming(std::size_t index) {
    const Preset& preset = scene_.presets.presets().at(index);
    if (!preset.isUser) {
        return;
    }
    scene_.entry = ValueEntry{
        .parameter = Parameter::enabled,
        .entry = TextEntry(preset.name, TextEntry::longestName),
        .complaint = {},
        .purpose = ValueEntry::Purpose::renamePreset,
        .renamed = preset.name,
    };
    closeList();
}

/// What is wrong with a name for a preset; "" for nothing.
std::string Editor::nameComplaint(const std::string& name) {
    if (name.empty()) {
        return "A preset needs a name";
    }
    if (scene_.presets.find({name, false})) {
        return inQuotes(name) + " is a factory preset: choose another name";
    }
    ValueEntry& entry = *scene_.entry;
    if (!scene_.presets.find({name, true})) {
        return "";
    }
    if (entry.purpose == ValueEntry::Purpose::renamePreset) {
        return inQuotes(name) + " exists: choose another name";
    }
    const auto chosen = scene_.presets.chosenKey();
    if (chosen == PresetChoice::Key{name, true} || std::exchange(entry.replaced, name) == name) {
        return "";
    }
    return inQuotes(name) + " exists: Enter again replaces it";
}

bool Editor::commitName() {
    readPresets();
    ValueEntry& entry = *scene_.entry;
    const std::string name = trimmed(entry.entry.text());
    const bool isRenaming = entry.purpose == ValueEntry::Purpose::renamePreset;
    if (isRenaming && name == entry.renamed) {
        cancelEntry();
        return true;
    }
    entry.complaint = nameComplaint(name);
    if (!entry.complaint.empty()) {
        return false;
    }
    const auto& presets = scene_.presets;
    const auto old = presets.find({isRenaming ? entry.renamed : name, true});
    const auto before = old ? std::optional(presets.presets().at(*old)) : std::nullopt;
    Preset after{.name = name, .values = {}, .description = {}, .isUser = true};
    if (isRenaming) {
        if (!before) {
            entry.complaint = inQuotes(entry.renamed) + " is no longer there";
            return false;
        }
        after.values = before->values;
        after.description = before->description;
    } else {
        for (std::size_t i = 0; i < parameterCount; ++i) {
            const auto parameter = static_cast<Parameter>(i);
            if (isInPresets(parameter)) {
                after.values.emplace_back(parameter, scene_.values[parameter]);
            }
        }
    }
    const bool isChosen = !isRenaming || presets.chosen() == old;
    beginStep();
    entry.complaint = replacePreset(before, after);
    if (!entry.complaint.empty()) {
        endStep();
        return false;
    }
    if (isChosen) {
        scene_.presets.choose(PresetChoice::Key{name, true});
        scene_.presets.update(scene_.values);
    }
    // A new preset took nothing away, so that undoing an older step need not delete it.
    if (before) {
        edit_->preset = {before, after};
    }
    endStep();
    cancelEntry();
    if (before && !isRenaming) {
        setNotice(inQuotes(name) + " is replaced: Ctrl+Z restores it");
    }
    return true;
}

void Editor::deletePreset(std::size_t index) {
    const Preset preset = scene_.presets.presets().at(index);
    if (!preset.isUser) {
        return;
    }
    beginStep();
    const auto complaint = replacePreset(preset, std::nullopt);
    if (complaint.empty()) {
        edit_->preset = {preset, std::nullopt};
    }
    endStep();
    setNotice(complaint.empty() ? inQuotes(preset.name) + " is deleted: Ctrl+Z restores it"
                                : complaint);
}

// The comparison.

Sound Editor::presentSound() const {
    return {scene_.values, scene_.presets.chosenKey()};
}

void Editor::switchSound() {
    beginStep();
    const Comparison before = scene_.comparison;
    const Sound next = before.other.value_or(presentSound());
    scene_.comparison = {!before.isB, presentSound()};
    for (std::size_t i = 0; i < parameterCount; ++i) {
        const auto parameter = static_cast<Parameter>(i);
        if (isInPresets(parameter) && scene_.values[parameter] != next.values[parameter]) {
            writeGrabbed(parameter, next.values[parameter]);
        }
    }
    scene_.presets.choose(next.preset);
    scene_.presets.update(scene_.values);
    edit_->comparison = {before, scene_.comparison};
    endStep();
    scene_.markChanged(Part::header);
}

void Editor::copySound() {
    beginStep();
    const Comparison before = scene_.comparison;
    scene_.comparison.other = presentSound();
    edit_->comparison = {before, scene_.comparison};
    endStep();
    setNotice(before.isB ? "B is copied to A" : "A is copied to B");
}

}  // namespace orvalo::effect::ui
