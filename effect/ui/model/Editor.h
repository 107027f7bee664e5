#pragma once

#include "effect/ui/model/Host.h"
#include "effect/ui/model/Scene.h"

namespace orvalo::effect::ui {

/// Everything that a user can do to the scene, whatever it is done with. Host-side changes come
/// in here, too, so that what depends on them stays right.
class Editor {
  public:
    Editor(Scene& scene, Host& host) : scene_(scene), host_(host) {}

    /// Sets a parameter and tells the host when it has changed.
    void set(Parameter parameter, float value);
    /// The same, held just for this.
    void setOnce(Parameter parameter, float value);
    /// Takes a parameter from the host. One that is held keeps the user's value.
    void receive(Parameter parameter, float value);

    void hold(Parameter parameter);
    void release();

    /// Writes all that the preset sets; indices as in the scene's presets.
    void choosePreset(std::size_t index);
    void stepPreset(int direction);
    void openList();
    void closeList();
    void markEntry(std::size_t index);

    void beginEntry(Parameter parameter);
    /// Takes the typed value and ends the entry; false, with a complaint, when it is none.
    bool commitEntry();
    void cancelEntry();
    void entryChanged();

    void hover(const Target& target);
    void focus(std::size_t place, bool shown);
    void setHasKeyboard(bool has);

  private:
    void show(Parameter parameter, float value);
    void touch(const Target& target);
    void touchFocus();

    Scene& scene_;
    Host& host_;
    std::optional<Parameter> held_;
};

}  // namespace orvalo::effect::ui
