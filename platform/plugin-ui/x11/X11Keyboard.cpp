#include "platform/plugin-ui/x11/X11Keyboard.h"

#include <X11/Xlib.h>

#include <utility>

namespace orvalo {

namespace {

/// Whether the focus window has changed, rather than a grab of the keyboard or the window that the
/// pointer makes the focus.
bool isFocusMove(const XFocusChangeEvent& event) {
    const bool isOfGrab = event.mode == NotifyGrab || event.mode == NotifyUngrab;
    return !isOfGrab && event.detail != NotifyPointer && event.detail != NotifyPointerRoot;
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
        } else if (event.type == KeyPress) {
            reportKey(event);
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
            break;
        case LeaveNotify:
            // A held button or an open menu grabs the pointer: the UI is still in use.
            if (event.xcrossing.detail != NotifyInferior && event.xcrossing.mode != NotifyGrab) {
                restoreFocus();
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
        case KeyPress:
            reportKey(event);
            break;
        default:
            break;
    }
}

void X11Keyboard::reportKey(const XEvent& event) const {
    // A key that was not sent has reached the toolkit, too.
    if (hasKeyboard_ && event.xkey.send_event != False) {
        if (const auto use = onUnusedKey) {
            use({event.xkey.keycode, event.xkey.state});
        }
    }
}

void X11Keyboard::handlePress() {
    if (connection_->pointer(container_).isInside) {
        hasKeyboard_ = true;
        takeFocus();
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
        XSetInputFocus(connection_->display(), toplevel_, RevertToParent, CurrentTime);
        XFlush(connection_->display());
    }
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
