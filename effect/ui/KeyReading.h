#pragma once

#include <X11/Xlib.h>

#include <optional>

#include "effect/ui/model/Input.h"

namespace orvalo::effect::ui {

/// Translates a key event; absent for keys that the UI does not use.
std::optional<Keystroke> readKey(const XKeyEvent& event);

/// Whether Shift or Ctrl is held, for fine control. state: of an X event.
bool asksForFine(unsigned int state);

}  // namespace orvalo::effect::ui
