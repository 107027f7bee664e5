#pragma once

#include <X11/Xlib.h>

#include <optional>

#include "effect/ui/model/Input.h"

namespace orvalo::effect::ui {

/// What a key of the keyboard means; absent for one that means nothing by itself.
std::optional<Keystroke> readKey(const XKeyEvent& event);

/// Whether Shift or Ctrl is held, which asks for fine control.
bool asksForFine(unsigned int state);

}  // namespace orvalo::effect::ui
