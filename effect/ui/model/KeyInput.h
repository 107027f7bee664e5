#pragma once

#include "effect/ui/model/Editor.h"
#include "effect/ui/model/Input.h"

namespace orvalo::effect::ui {

/// Handles the keyboard: Tab moves the focus, arrow keys turn, Enter starts typing a value,
/// Ctrl+Z undoes.
class KeyInput {
  public:
    /// Steps of Page Up and Page Down.
    static constexpr int pageSteps = 10;

    KeyInput(Scene& scene, Editor& editor) : scene_(scene), editor_(editor) {}

    /// Returns false for a key that the UI does not use; it belongs to the host.
    bool press(const Keystroke& key);

  private:
    bool pressInEntry(const Keystroke& key);
    bool pressInList(const Keystroke& key);
    bool pressOnHeader(const Keystroke& key);
    bool pressOnControl(Parameter parameter, const Keystroke& key);
    void moveFocus(int direction);

    Scene& scene_;
    Editor& editor_;
};

}  // namespace orvalo::effect::ui
