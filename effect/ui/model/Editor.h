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

    /// The changes between the two calls are one step of undo. Pairs of calls may nest.
    void beginStep();
    /// Returns whether anything has changed.
    bool endStep();
    /// Both are ignored while a parameter is held.
    void undo();
    void redo();

    /// Sets a parameter, and writes it to the host if it has changed.
    void set(Parameter parameter, float value);
    /// Sets a parameter in a step of its own, grabbed and released around the change. Returns
    /// whether it has changed.
    bool setOnce(Parameter parameter, float value);
    /// Sets a parameter by the wheel or a key: consecutive turns of one parameter are one step.
    void turn(Parameter parameter, float value);
    /// Takes a parameter's value from the host, which is not a step. Ignored while the user holds
    /// that parameter.
    void receive(Parameter parameter, float value);

    /// Grabs a parameter for a drag, which is one step until release().
    void hold(Parameter parameter);
    void release();

    /// Carries out the action of a field of the header.
    void activate(Focus field);

    /// Writes all values of the preset. index: in the scene's presets.
    void choosePreset(std::size_t index);
    void stepPreset(int direction);
    /// Takes the presets from the store.
    void readPresets();
    /// Reads the presets anew first.
    void openList();
    void closeList();
    void markEntry(std::size_t index);
    /// Scrolls the list by columns: to the right when positive.
    void scrollList(int columns);

    /// Starts typing a name under which the present values are saved.
    void beginSaving();
    /// Starts typing another name for a preset of the user's. Ignores factory presets.
    void beginRenaming(std::size_t index);
    /// Deletes a preset of the user's. Ignores factory presets.
    void deletePreset(std::size_t index);
    void setNotice(std::string notice);

    /// Switches between A and B.
    void switchSound();
    /// Copies the sound that is heard, A or B, to the other one.
    void copySound();

    void beginEntry(Parameter parameter);
    /// Takes the typed value or name and ends the entry. For invalid text sets the complaint and
    /// returns false.
    bool commitEntry();
    void cancelEntry();
    /// To be called after each change of the text: withdraws the complaint.
    void entryChanged();

    /// Turns a switch on or off, or chooses the next value of a choice, the first after the last.
    void advance(Parameter parameter);

    /// Opens a page, or the history if that page is open already.
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
    /// Sets a value in the scene and marks what changes with it.
    void show(Parameter parameter, float value);
    /// Shows a value, notes it in the step, and writes it to the host.
    void write(Parameter parameter, float value);
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
    // The parameter of a drag.
    std::optional<Parameter> held_;
    // The step that is being made, and how many calls of beginStep() have not ended.
    std::optional<Edit> edit_;
    int depth_ = 0;
    // The parameter whose next turn joins the last step.
    std::optional<Parameter> turned_;
};

}  // namespace orvalo::effect::ui
