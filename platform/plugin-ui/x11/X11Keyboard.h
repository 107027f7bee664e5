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

/// Gives the keyboard to an embedded UI once the user has clicked into it, if its toplevel
/// has the keyboard: the focus goes to the toplevel itself, so that the X server offers each key to
/// the window under the pointer first and to the toplevel where that takes none. When the pointer
/// leaves the UI, the user clicks elsewhere in the toplevel, or the UI is hidden, the
/// focus goes back to where it was, also when the UI has taken it for itself; what it takes
/// without a click goes back at once. Keys that the UI has got and sends on, because they
/// mean nothing to it, are reported: toolkits of today do not see what is sent. One for a toplevel
/// at a time. Main thread.
class X11Keyboard {
  public:
    /// container: the window around the UI's; toplevel: the window above that.
    X11Keyboard(std::shared_ptr<X11Connection> connection, unsigned long toplevel,
                unsigned long container);
    ~X11Keyboard();
    X11Keyboard(const X11Keyboard&) = delete;
    X11Keyboard& operator=(const X11Keyboard&) = delete;

    /// The UI has sent a key on, to the container or to the toplevel, while it had the
    /// keyboard. The object may be destroyed inside. May be empty.
    std::function<void(const X11Key&)> onUnusedKey;

    /// For the container's EnterNotify, LeaveNotify, FocusIn and KeyPress events.
    void handle(const XEvent& event);
    /// Ends the UI's use of the keyboard.
    void takeBack();

  private:
    void pressed();
    void takeKey(const XEvent& event) const;
    void give();
    unsigned long focus();

    std::shared_ptr<X11Connection> connection_;
    const unsigned long toplevel_;
    const unsigned long container_;
    // What had the focus last in the toplevel, but not in here; 0 when that is not known.
    unsigned long before_ = 0;
    bool isUsed_ = false;  // The UI, by a click.
};

}  // namespace orvalo
