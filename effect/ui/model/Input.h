#pragma once

#include <cstdint>

namespace orvalo::effect::ui {

/// A pointer event: position in pixels, time in seconds of any clock.
struct Pointer {
    double x = 0.0;
    double y = 0.0;
    double time = 0.0;
    /// Whether Shift or Ctrl is held, for fine control.
    bool fine = false;
};

enum class Key : std::uint8_t {
    character,
    enter,
    escape,
    tab,
    backTab,
    left,
    right,
    up,
    down,
    pageUp,
    pageDown,
    home,
    end,
    backspace,
    erase,
    selectAll,
    rename,
    undo,
    redo,
};

/// A key press.
struct Keystroke {
    Key key = Key::character;
    /// The character, for Key::character.
    char32_t character = 0;
    bool fine = false;
    /// Identifies the physical key while it is pressed.
    std::uint32_t code = 0;
};

}  // namespace orvalo::effect::ui
