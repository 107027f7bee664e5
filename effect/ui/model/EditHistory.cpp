#include "effect/ui/model/EditHistory.h"

#include <algorithm>

namespace orvalo::effect::ui {

void Edit::note(Parameter parameter, float before, float after) {
    const auto found = std::find_if(values.begin(), values.end(), [parameter](const Value& one) {
        return one.parameter == parameter;
    });
    if (found == values.end()) {
        values.push_back({parameter, before, after});
    } else {
        found->after = after;
    }
}

bool Edit::tidy() {
    std::erase_if(values, [](const Value& one) { return one.before == one.after; });
    return !values.empty() || comparison || preset;
}

void EditHistory::add(Edit edit) {
    edits_.erase(edits_.begin() + static_cast<std::ptrdiff_t>(done_), edits_.end());
    if (edits_.size() == most) {
        edits_.erase(edits_.begin());
    }
    edits_.push_back(std::move(edit));
    done_ = edits_.size();
}

bool EditHistory::joinLast() {
    const Edit last = std::move(edits_.back());
    edits_.pop_back();
    Edit& joined = edits_.back();
    for (const auto& [parameter, before, after] : last.values) {
        joined.note(parameter, before, after);
    }
    joined.chosen.after = last.chosen.after;
    const bool isChange = joined.tidy();
    if (!isChange) {
        edits_.pop_back();
    }
    done_ = edits_.size();
    return isChange;
}

std::optional<Edit> EditHistory::undo() {
    return canUndo() ? std::optional(edits_.at(--done_)) : std::nullopt;
}

std::optional<Edit> EditHistory::redo() {
    return canRedo() ? std::optional(edits_.at(done_++)) : std::nullopt;
}

}  // namespace orvalo::effect::ui
