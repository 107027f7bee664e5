#pragma once

#include <cstdint>

namespace orvalo::effect::ui {

/// The pointer at one moment: place in pixels, time in seconds of any clock.
struct Pointer {
    double x = 0.0;
    double y = 0.0;
    double time = 0.0;
    /// Whether Shift or Ctrl asks for fine control.
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
    chooseAll,
};

/// A key that was pressed.
struct Keystroke {
    Key key = Key::character;
    /// What it writes, in ASCII, for a character.
    char character = 0;
    bool fine = false;
};

}  // namespace orvalo::effect::ui
