#pragma once

#include "effect/ui/model/Host.h"
#include "effect/ui/model/NotePlayer.h"
#include "effect/ui/model/Scene.h"

namespace orvalo::effect::ui {

/// The edits of the scene, by pointer, keyboard and host. Keeps the preset choice and the changed
/// parts up to date, and tells the host what the user changes.
class Editor {
  public:
    Editor(Scene& scene, Host& host) : scene_(scene), host_(host), notes_(scene, host) {}

    NotePlayer& notes() { return notes_; }

    /// Sets a parameter, and writes it to the host if it has changed.
    void set(Parameter parameter, float value);
    /// The same, with the parameter grabbed and released around the change.
    void setOnce(Parameter parameter, float value);
    /// Takes a parameter's value from the host. Ignored while the user holds that parameter.
    void receive(Parameter parameter, float value);

    void hold(Parameter parameter);
    void release();

    /// Writes all values of the preset. index: in the scene's presets.
    void choosePreset(std::size_t index);
    void stepPreset(int direction);
    void openList();
    void closeList();
    void markEntry(std::size_t index);

    void beginEntry(Parameter parameter);
    /// Takes the typed value and ends the entry. Returns false, and sets the complaint, for invalid
    /// text.
    bool commitEntry();
    void cancelEntry();
    void entryChanged();

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
    void markChanged(const Target& target);
    void markFocusChanged();

    Scene& scene_;
    Host& host_;
    NotePlayer notes_;
    std::optional<Parameter> held_;
};

}  // namespace orvalo::effect::ui
