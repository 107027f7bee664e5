#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

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
/// at once when the UI takes the focus without a click.
///
/// Without a click the UI gets no keys, whatever the window manager: where the focus is the
/// toplevel or a window around it, the toolkit is asked to focus a window inside, as window
/// managers do that know WM_TAKE_FOCUS.
///
/// A UI that tells that it sends the keys that it does not use gets the focus itself, by a click or
/// by enter(). It keeps the focus when the pointer leaves it, so that no key goes elsewhere.
///
/// Keys that the UI does not use and sends to the host are reported, because GTK ignores sent keys.
/// Most UIs send none, though they receive all. Of such a UI each key is reported as well: it gets
/// the key, too, and whether it uses it cannot be known. A UI tells that it sends what it does not
/// use by the property _ORVALO_SENDS_UNUSED_KEYS of its window, or by sending a key. At most one
/// object per toplevel. Main thread.
class X11Keyboard {
  public:
    /// container: the window around the UI's; toplevel: the window above that.
    X11Keyboard(std::shared_ptr<X11Connection> connection, unsigned long toplevel,
                unsigned long container);
    ~X11Keyboard();
    X11Keyboard(const X11Keyboard&) = delete;
    X11Keyboard& operator=(const X11Keyboard&) = delete;

    /// The UI had the keyboard and sent a key on, to the container or to the toplevel, or received
    /// one and sends none. The object may be destroyed inside. May be empty.
    std::function<void(const X11Key&)> onUnusedKey;

    /// Handles the container's EnterNotify, LeaveNotify, FocusIn, FocusOut and KeyPress events.
    void handle(const XEvent& event);
    /// Focuses a UI that tells that it sends the keys that it does not use, and tells it by a
    /// message of the XEmbed protocol to mark its last control (atEnd) or its first. Returns
    /// whether there is such a UI.
    bool enter(bool atEnd);
    /// A window manager tells the toolkit to take the focus, as many do at each click into the
    /// toplevel. Where the UI has the keyboard, gives the focus to the UI and returns true:
    /// otherwise the toolkit would get the keys that follow the click. time: of the request, in the
    /// server's milliseconds.
    bool keepFocus(unsigned long time);
    /// Ends the UI's use of the keyboard.
    void restoreFocus();

  private:
    void handlePress();
    void reportSentKey(const XEvent& event);
    void reportKey(const XEvent& event);
    /// Follows the keys that the UI's windows receive, unless the UI sends those it does not use.
    void watchKeys();
    void unwatchKeys();
    void takeFocus();
    void focusUI(unsigned long time);
    /// Keeps the X server from offering keys to the UI because the pointer is over it.
    void keepKeysFromUI();
    /// Undoes keepKeysFromUI() where the keys follow the pointer.
    void letKeysFollowPointer();
    /// Returns the focus window, and notes it where it is in the toplevel but not in the container.
    unsigned long updateFocus();

    std::shared_ptr<X11Connection> connection_;
    const unsigned long toplevel_;
    const unsigned long container_;
    unsigned long sendingWindow_ = 0;  // The UI's, which tells that it sends keys; 0 without one.
    unsigned long previousFocus_ = 0;  // As updateFocus() noted; 0 when not known.
    unsigned long focusAround_ = 0;    // That keepKeysFromUI() moved; 0 for none.
    bool hasKeyboard_ = false;         // The UI, by a click.
    bool sendsKeys_ = false;           // The UI has sent a key.
    std::vector<unsigned long> watched_;           // Windows of the UI.
    std::pair<unsigned, unsigned long> reported_;  // Code and time of the last key.
};

}  // namespace orvalo
