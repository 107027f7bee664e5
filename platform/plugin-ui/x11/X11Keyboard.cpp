#include "platform/plugin-ui/x11/X11Keyboard.h"

#include <X11/Xlib.h>

#include <utility>

namespace orvalo {

namespace {

/// Whether the focus itself has moved, not only a grab of the keyboard, and not only the pointer's
/// share in it.
bool isMoveOfFocus(const XFocusChangeEvent& event) {
    const bool isOfGrab = event.mode == NotifyGrab || event.mode == NotifyUngrab;
    return !isOfGrab && event.detail != NotifyPointer && event.detail != NotifyPointerRoot;
}

}  // namespace

X11Keyboard::X11Keyboard(std::shared_ptr<X11Connection> connection, unsigned long toplevel,
                         unsigned long container)
    : connection_(std::move(connection)), toplevel_(toplevel), container_(container) {
    // After a click the window manager gives the focus to the toplevel, and the toolkit takes it on
    // from there. Keys are sent on with the mask for keys, or with none, to who made the window.
    XSelectInput(connection_->display(), toplevel_, FocusChangeMask | KeyPressMask);
    connection_->setHandler(toplevel_, [this](const XEvent& event) {
        if (event.type == FocusIn || event.type == FocusOut) {
            give();
        } else if (event.type == KeyPress) {
            takeKey(event);
        }
    });
    connection_->setPressHandler(this, [this] { pressed(); });
    focus();
}

X11Keyboard::~X11Keyboard() {
    takeBack();
    connection_->removePressHandler(this);
    connection_->removeHandler(toplevel_);
    XSelectInput(connection_->display(), toplevel_, NoEventMask);
}

void X11Keyboard::handle(const XEvent& event) {
    switch (event.type) {
        case EnterNotify:
            focus();
            break;
        case LeaveNotify:
            // While a button is held or a menu is open the UI is still in use.
            if (event.xcrossing.detail != NotifyInferior && event.xcrossing.mode != NotifyGrab) {
                takeBack();
            }
            break;
        case FocusIn:
            if (!isUsed_ && isMoveOfFocus(event.xfocus)) {
                // Touches are held buttons, but no presses.
                const auto pointer = connection_->pointer(container_);
                isUsed_ = pointer.isInside && pointer.isButtonHeld;
                if (!isUsed_) {
                    takeBack();
                }
            }
            break;
        case KeyPress:
            takeKey(event);
            break;
        default:
            break;
    }
}

void X11Keyboard::takeKey(const XEvent& event) const {
    // What is not sent has come to the toolkit as well.
    if (isUsed_ && event.xkey.send_event != False) {
        if (const auto take = onUnusedKey) {
            take({event.xkey.keycode, event.xkey.state});
        }
    }
}

void X11Keyboard::pressed() {
    if (connection_->pointer(container_).isInside) {
        isUsed_ = true;
        give();
    } else if (isUsed_ && connection_->pointer(toplevel_).isInside) {
        // Outside the toplevel it may be a menu of the UI.
        takeBack();
    }
}

void X11Keyboard::give() {
    const auto now = focus();
    // Without a focus window the keys go where the pointer is anyway; in another toplevel they are
    // that one's.
    if (isUsed_ && now != None && now == before_) {
        XSetInputFocus(connection_->display(), toplevel_, RevertToParent, CurrentTime);
        XFlush(connection_->display());
    }
}

void X11Keyboard::takeBack() {
    const auto now = focus();
    const bool isHere = now > PointerRoot && connection_->isInside(now, container_);
    if (isHere || (isUsed_ && now == toplevel_ && before_ != None)) {
        XSetInputFocus(connection_->display(), before_ == None ? toplevel_ : before_,
                       RevertToParent, CurrentTime);
        XFlush(connection_->display());
    }
    isUsed_ = false;
}

unsigned long X11Keyboard::focus() {
    Window now = None;
    int revert = 0;
    XGetInputFocus(connection_->display(), &now, &revert);
    if (now > PointerRoot && now != toplevel_ && !connection_->isInside(now, container_) &&
        connection_->isInside(now, toplevel_)) {
        before_ = now;
    }
    return now;
}

}  // namespace orvalo
