#pragma once

namespace orvalo {

/// A key that was struck, as the X server numbers it.
struct X11Key {
    unsigned code;   ///< The keycode.
    unsigned state;  ///< The modifiers and the keyboard group, as in an X key event.
};

}  // namespace orvalo
