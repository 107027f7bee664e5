#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "effect/ui/model/PresetChoice.h"

namespace orvalo::effect::ui {

/// All values of A or B, and the preset that was chosen for them.
struct Sound {
    ParameterValues values;
    std::optional<PresetChoice::Key> preset;
};

/// The comparison of two sounds, of which A or B is heard.
struct Comparison {
    bool isB = false;
    /// The sound that is not heard. Absent until the first switch or copy: until then both are the
    /// same.
    std::optional<Sound> other;
};

/// One step of the user: what it changed, before and after.
struct Edit {
    struct Value {
        Parameter parameter;
        float before;
        float after;
    };
    template <typename T>
    struct Change {
        T before;
        T after;
    };

    std::vector<Value> values;
    Change<std::optional<PresetChoice::Key>> chosen;
    std::optional<Change<Comparison>> comparison;
    /// The user's preset that was saved, renamed or deleted; on each side absent where there is
    /// none.
    std::optional<Change<std::optional<Preset>>> preset;

    /// Notes a new value of a parameter.
    void note(Parameter parameter, float before, float after);
    /// Drops the values that did not change. Returns whether anything is left.
    bool tidy();
};

/// The steps that can be undone and done again.
class EditHistory {
  public:
    /// Older steps are forgotten.
    static constexpr std::size_t most = 200;

    /// Adds a step; those that were undone are forgotten.
    void add(Edit edit);
    /// Makes one step of the last two. Returns false if they cancel each other out; then both are
    /// forgotten.
    bool joinLast();

    bool canUndo() const { return done_ > 0; }
    bool canRedo() const { return done_ < edits_.size(); }
    /// The step to undo, or to do again; absent when there is none.
    std::optional<Edit> undo();
    std::optional<Edit> redo();

  private:
    std::vector<Edit> edits_;
    // The steps before this one are done, the others undone.
    std::size_t done_ = 0;
};

}  // namespace orvalo::effect::ui
