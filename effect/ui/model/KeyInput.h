#pragma once

#include "effect/ui/model/Editor.h"
#include "effect/ui/model/Input.h"

namespace orvalo::effect::ui {

/// Handles the keyboard: Tab moves the focus, arrow keys turn, Enter starts typing a value, letters
/// play notes, Ctrl+Z undoes.
class KeyInput {
  public:
    /// Steps of Page Up and Page Down.
    static constexpr int pageSteps = 10;

    KeyInput(Scene& scene, Editor& editor) : scene_(scene), editor_(editor) {}

    /// Returns false for a key that the UI does not use; it belongs to the host. Tab behind the
    /// last control and Shift+Tab before the first belong to the host, too.
    bool press(const Keystroke& key);
    /// Ends the note of the key. Returns false if it played none.
    bool release(std::uint32_t code) { return editor_.notes().releaseKey(code); }
    /// Marks the first or the last control: the host has moved the focus into the UI.
    void enter(bool atEnd) { editor_.focus(atEnd ? scene_.tabOrder().back() : 0, true); }

  private:
    bool pressInEntry(const Keystroke& key);
    bool pressInList(const Keystroke& key);
    bool pressOnHeader(const Keystroke& key);
    bool pressOnControl(Parameter parameter, const Keystroke& key);
    bool pressOnButton(const Keystroke& key);
    bool moveFocus(int direction);

    Scene& scene_;
    Editor& editor_;
};

}  // namespace orvalo::effect::ui
