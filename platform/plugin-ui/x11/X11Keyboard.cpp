#include "platform/plugin-ui/x11/X11Keyboard.h"

#include <X11/Xlib.h>

#include <algorithm>
#include <utility>

namespace orvalo {

namespace {

/// Whether the focus window has changed, rather than a grab of the keyboard or the window that the
/// pointer makes the focus.
bool isFocusMove(const XFocusChangeEvent& event) {
    const bool isOfGrab = event.mode == NotifyGrab || event.mode == NotifyUngrab;
    return !isOfGrab && event.detail != NotifyPointer && event.detail != NotifyPointerRoot;
}

/// The windows inside a window.
std::vector<Window> windowsIn(Display* display, Window window) {
    Window root = 0;
    Window parent = 0;
    Window* list = nullptr;
    unsigned count = 0;
    if (XQueryTree(display, window, &root, &parent, &list, &count) == 0 || list == nullptr) {
        return {};
    }
    const std::vector<Window> children(list, list + count);
    XFree(list);
    auto result = children;
    for (const auto child : children) {
        const auto inside = windowsIn(display, child);
        result.insert(result.end(), inside.begin(), inside.end());
    }
    return result;
}

/// The windows inside the container whose client receives keys there. Only on these may another
/// client select keys: elsewhere it would keep them from the windows above.
std::vector<Window> windowsForKeys(Display* display, Window container) {
    std::vector<Window> result;
    for (const auto window : windowsIn(display, container)) {
        XWindowAttributes attributes;
        if (XGetWindowAttributes(display, window, &attributes) != 0 &&
            (attributes.all_event_masks & KeyPressMask) != 0) {
            result.push_back(window);
        }
    }
    return result;
}

/// The window inside the container whose UI tells that it sends keys; None without one.
Window windowThatSendsKeys(Display* display, Window container) {
    const auto property = XInternAtom(display, "_ORVALO_SENDS_UNUSED_KEYS", False);
    const auto windows = windowsIn(display, container);
    const auto found = std::ranges::find_if(windows, [&](Window window) {
        int count = 0;
        Atom* const properties = XListProperties(display, window, &count);
        const bool isThere =
            std::find(properties, properties + count, property) != properties + count;
        if (properties != nullptr) {
            XFree(properties);
        }
        return isThere;
    });
    return found == windows.end() ? None : *found;
}

/// Tells a window by the XEmbed protocol that it has the focus.
void sendFocusIn(Display* display, Window window, bool atEnd) {
    constexpr long focusIn = 4;
    constexpr long focusFirst = 1;
    constexpr long focusLast = 2;
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display, "_XEMBED", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = CurrentTime;
    event.xclient.data.l[1] = focusIn;
    event.xclient.data.l[2] = atEnd ? focusLast : focusFirst;
    XSendEvent(display, window, False, NoEventMask, &event);
}

}  // namespace

X11Keyboard::X11Keyboard(std::shared_ptr<X11Connection> connection, unsigned long toplevel,
                         unsigned long container)
    : connection_(std::move(connection)), toplevel_(toplevel), container_(container) {
    // After a click the window manager focuses the toplevel, and the toolkit then focuses its own
    // window: takeFocus() has to follow both. UIs send unused keys with the mask for keys, or
    // without a mask, in which case the client that created the window gets them.
    XSelectInput(connection_->display(), toplevel_, FocusChangeMask | KeyPressMask);
    connection_->setHandler(toplevel_, [this](const XEvent& event) {
        if (event.type == FocusIn || event.type == FocusOut) {
            takeFocus();
            keepKeysFromUI();
        } else if (event.type == KeyPress) {
            reportSentKey(event);
        }
    });
    connection_->setPressHandler(this, [this] { handlePress(); });
    updateFocus();
}

X11Keyboard::~X11Keyboard() {
    restoreFocus();
    connection_->removePressHandler(this);
    connection_->removeHandler(toplevel_);
    XSelectInput(connection_->display(), toplevel_, NoEventMask);
}

void X11Keyboard::handle(const XEvent& event) {
    switch (event.type) {
        case EnterNotify:
            updateFocus();
            keepKeysFromUI();
            break;
        case LeaveNotify:
            // A held button or an open menu grabs the pointer: the UI is still in use.
            if (event.xcrossing.detail != NotifyInferior && event.xcrossing.mode != NotifyGrab &&
                sendingWindow_ == None) {
                restoreFocus();
                letKeysFollowPointer();
            }
            break;
        case FocusIn:
            if (!hasKeyboard_ && isFocusMove(event.xfocus)) {
                // A touch holds a button but sends no press.
                const auto pointer = connection_->pointer(container_);
                hasKeyboard_ = pointer.isInside && pointer.isButtonHeld;
                if (!hasKeyboard_) {
                    restoreFocus();
                }
            }
            break;
        case FocusOut:
            // The toolkit may answer WM_TAKE_FOCUS after the click.
            takeFocus();
            break;
        case KeyPress:
            reportSentKey(event);
            break;
        default:
            break;
    }
}

void X11Keyboard::reportSentKey(const XEvent& event) {
    // A key that was not sent has reached the toolkit, too.
    if (!hasKeyboard_ || event.xkey.send_event == False) {
        return;
    }
    sendsKeys_ = true;
    unwatchKeys();
    // The key that shows it may be reported already.
    if (reported_ != std::pair(event.xkey.keycode, event.xkey.time)) {
        reportKey(event);
    }
}

void X11Keyboard::reportKey(const XEvent& event) {
    reported_ = {event.xkey.keycode, event.xkey.time};
    if (const auto use = onUnusedKey) {
        use({event.xkey.keycode, event.xkey.state});
    }
}

void X11Keyboard::watchKeys() {
    if (sendsKeys_ || sendingWindow_ != None) {
        return;
    }
    for (const auto window : windowsForKeys(connection_->display(), container_)) {
        if (std::ranges::find(watched_, window) == watched_.end()) {
            watched_.push_back(window);
            XSelectInput(connection_->display(), window, KeyPressMask);
            connection_->setHandler(window, [this](const XEvent& event) {
                if (event.type == KeyPress && event.xkey.send_event == False && hasKeyboard_) {
                    reportKey(event);
                }
            });
        }
    }
    XFlush(connection_->display());
}

void X11Keyboard::unwatchKeys() {
    for (const auto window : std::exchange(watched_, {})) {
        connection_->removeHandler(window);
        XSelectInput(connection_->display(), window, NoEventMask);
    }
}

void X11Keyboard::handlePress() {
    if (connection_->pointer(container_).isInside) {
        hasKeyboard_ = true;
        sendingWindow_ = windowThatSendsKeys(connection_->display(), container_);
        takeFocus();
        watchKeys();
    } else if (hasKeyboard_ && connection_->pointer(toplevel_).isInside) {
        // A press outside the toplevel may be in a menu of the UI.
        restoreFocus();
    }
}

void X11Keyboard::takeFocus() {
    const auto now = updateFocus();
    // Without a focus window the window under the pointer gets the keys anyway. A focus in another
    // toplevel stays there.
    if (hasKeyboard_ && now != None && now == previousFocus_) {
        focusUI(CurrentTime);
    }
}

void X11Keyboard::focusUI(unsigned long time) {
    XSetInputFocus(connection_->display(), sendingWindow_ == None ? toplevel_ : sendingWindow_,
                   RevertToParent, time);
    XFlush(connection_->display());
}

bool X11Keyboard::keepFocus(unsigned long time) {
    // The press that caused the request may still wait in this connection.
    connection_->handlePresses();
    if (hasKeyboard_) {
        focusUI(time);
    }
    return hasKeyboard_;
}

void X11Keyboard::keepKeysFromUI() {
    const auto now = updateFocus();
    const bool isAround =
        now == PointerRoot || (now != None && connection_->isInside(toplevel_, now));
    if (hasKeyboard_ || !isAround || !connection_->pointer(container_).isInside) {
        return;
    }
    focusAround_ = now;
    auto* display = connection_->display();
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = toplevel_;
    event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_TAKE_FOCUS", False));
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(display, toplevel_, False, NoEventMask, &event);
    XFlush(display);
}

void X11Keyboard::letKeysFollowPointer() {
    const auto around = std::exchange(focusAround_, 0);
    if (around != 0 && around != toplevel_ && updateFocus() == previousFocus_) {
        XSetInputFocus(connection_->display(), around, RevertToPointerRoot, CurrentTime);
        XFlush(connection_->display());
    }
}

bool X11Keyboard::enter(bool atEnd) {
    sendingWindow_ = windowThatSendsKeys(connection_->display(), container_);
    if (sendingWindow_ == None) {
        return false;
    }
    hasKeyboard_ = true;
    updateFocus();
    XSetInputFocus(connection_->display(), sendingWindow_, RevertToParent, CurrentTime);
    sendFocusIn(connection_->display(), sendingWindow_, atEnd);
    XFlush(connection_->display());
    return true;
}

void X11Keyboard::restoreFocus() {
    const auto now = updateFocus();
    const bool isHere = now > PointerRoot && connection_->isInside(now, container_);
    if (isHere || (hasKeyboard_ && now == toplevel_ && previousFocus_ != None)) {
        XSetInputFocus(connection_->display(), previousFocus_ == None ? toplevel_ : previousFocus_,
                       RevertToParent, CurrentTime);
        XFlush(connection_->display());
    }
    hasKeyboard_ = false;
    sendingWindow_ = None;
    unwatchKeys();
}

unsigned long X11Keyboard::updateFocus() {
    Window now = None;
    int revert = 0;
    XGetInputFocus(connection_->display(), &now, &revert);
    if (now > PointerRoot && now != toplevel_ && !connection_->isInside(now, container_) &&
        connection_->isInside(now, toplevel_)) {
        previousFocus_ = now;
    }
    return now;
}

}  // namespace orvalo
