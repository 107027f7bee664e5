#pragma once

#include "effect/ui/model/Host.h"
#include "effect/ui/model/NotePlayer.h"
#include "effect/ui/model/PresetStore.h"
#include "effect/ui/model/Scene.h"

namespace orvalo::effect::ui {

/// The edits of the scene, by pointer, keyboard and host. Keeps the preset choice and the changed
/// parts up to date, and tells the host what the user changes.
class Editor {
  public:
    Editor(Scene& scene, Host& host, PresetStore& store)
        : scene_(scene), host_(host), store_(store), notes_(scene, host) {}

    NotePlayer& notes() { return notes_; }

    /// What changes between the two is one step of undo. They nest.
    void beginStep();
    /// Returns whether anything has changed.
    bool endStep();
    /// Ignored while a knob is held.
    void undo();
    void redo();

    /// Sets a parameter, and writes it to the host if it has changed.
    void set(Parameter parameter, float value);
    /// The same, with the parameter grabbed and released around the change, as one step. Returns
    /// whether it has changed.
    bool setOnce(Parameter parameter, float value);
    /// The same by the wheel or an arrow key: consecutive turns of a parameter are one step.
    void turn(Parameter parameter, float value);
    /// Takes a parameter's value from the host, which is not a step. Ignored while the user holds
    /// that parameter.
    void receive(Parameter parameter, float value);

    void hold(Parameter parameter);
    void release();

    /// Does what a field of the header is for.
    void activate(Focus field);

    /// Writes all values of the preset. index: in the scene's presets.
    void choosePreset(std::size_t index);
    void stepPreset(int direction);
    /// Takes the presets from the store.
    void readPresets();
    /// With the presets that the store has now.
    void openList();
    void closeList();
    void markEntry(std::size_t index);
    /// Shows other columns of the list.
    void scrollList(int columns);

    /// Starts typing a name for the present values, or another name for a preset of the user's.
    void beginSaving();
    void beginRenaming(std::size_t index);
    /// Deletes a preset of the user's; nothing for another one.
    void deletePreset(std::size_t index);
    void setNotice(std::string notice);

    /// Switches between A and B.
    void switchSound();
    /// Copies the sound that is heard to the other one.
    void copySound();

    void beginEntry(Parameter parameter);
    /// Takes the typed value or name and ends the entry. Returns false, and sets the complaint, for
    /// invalid text.
    bool commitEntry();
    void cancelEntry();
    void entryChanged();

    /// Switches a switch, or chooses the next value of a choice, from the last on to the first.
    void advance(Parameter parameter);

    /// Opens a page; the page that is open gives way to the history.
    void openPage(Page page);
    void stepPage(int direction);

    /// Chooses the next (direction > 0) or previous span of the history, wrapping at the ends.
    void stepHistorySpan(int direction);
    void toggleHistoryPause();
    /// Forgets the clipping and the highest true peak.
    void resetMeters();

    void hover(const Target& target);
    void focus(std::size_t place, bool shown);
    void setHasKeyboard(bool has);

  private:
    void show(Parameter parameter, float value);
    void writeGrabbed(Parameter parameter, float value);
    void apply(const Edit& edit, bool isUndone);
    bool commitName();
    std::string nameComplaint(const std::string& name);
    std::string replacePreset(const std::optional<Preset>& from, const std::optional<Preset>& to);
    Sound presentSound() const;
    void markChanged(const Target& target);
    void markFocusChanged();
    void showMarked();

    Scene& scene_;
    Host& host_;
    PresetStore& store_;
    NotePlayer notes_;
    std::optional<Parameter> held_;
    std::optional<Edit> edit_;
    int depth_ = 0;
    // Whose turns are one step.
    std::optional<Parameter> turned_;
};

}  // namespace orvalo::effect::ui
