#pragma once

#include <functional>
#include <memory>

#include "platform/plugin-ui/x11/X11Connection.h"

namespace orvalo {

/// A struck key, as the X server numbers it.
struct X11Key {
    unsigned code;   ///< The keycode.
    unsigned state;  ///< The modifiers and the keyboard group, as in an X key event.
};

/// The keyboard of an embedded UI. A click into the UI focuses the toplevel itself, provided that
/// the toplevel has the keyboard: the X server then offers each key first to the window under the
/// pointer, and to the toplevel where that window does not accept it. The previous focus returns
/// when the pointer leaves the UI, the user clicks elsewhere in the toplevel, or the UI is hidden;
/// at once when the UI takes the focus without a click. Keys that the UI does not use and sends to
/// the host are reported, because GTK ignores sent keys. At most one object per toplevel. Main
/// thread.
class X11Keyboard {
  public:
    /// container: the window around the UI's; toplevel: the window above that.
    X11Keyboard(std::shared_ptr<X11Connection> connection, unsigned long toplevel,
                unsigned long container);
    ~X11Keyboard();
    X11Keyboard(const X11Keyboard&) = delete;
    X11Keyboard& operator=(const X11Keyboard&) = delete;

    /// The UI had the keyboard and sent a key on, to the container or to the toplevel. The object
    /// may be destroyed inside. May be empty.
    std::function<void(const X11Key&)> onUnusedKey;

    /// Handles the container's EnterNotify, LeaveNotify, FocusIn and KeyPress events.
    void handle(const XEvent& event);
    /// Ends the UI's use of the keyboard.
    void restoreFocus();

  private:
    void handlePress();
    void reportKey(const XEvent& event) const;
    void takeFocus();
    /// Returns the focus window, and notes it where it is in the toplevel but not in the container.
    unsigned long updateFocus();

    std::shared_ptr<X11Connection> connection_;
    const unsigned long toplevel_;
    const unsigned long container_;
    unsigned long previousFocus_ = 0;  // As updateFocus() noted; 0 when not known.
    bool hasKeyboard_ = false;         // The UI, by a click.
};

}  // namespace orvalo
