#pragma once

#include "effect/ui/model/Editor.h"
#include "effect/ui/model/Input.h"

namespace orvalo::effect::ui {

/// What keys do: the tab key goes from control to control, arrows turn, Enter opens.
class KeyInput {
  public:
    /// How many steps the page keys turn.
    static constexpr int pageSteps = 10;

    KeyInput(Scene& scene, Editor& editor) : scene_(scene), editor_(editor) {}

    /// False for a key that means nothing here and is the host's.
    bool press(const Keystroke& key);

  private:
    bool pressInEntry(const Keystroke& key);
    bool pressInList(const Keystroke& key);
    bool pressOnPresets(const Keystroke& key);
    bool pressOnControl(Parameter parameter, const Keystroke& key);
    void moveFocus(int direction);

    Scene& scene_;
    Editor& editor_;
};

}  // namespace orvalo::effect::ui
