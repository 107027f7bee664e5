#include "platform/audio/interface/X11Keyboard.h"

#include <X11/Xlib.h>

#include <utility>

namespace orvalo {

X11Keyboard::X11Keyboard(std::shared_ptr<X11Connection> connection, unsigned long toplevel,
                         unsigned long container)
    : connection_(std::move(connection)), toplevel_(toplevel), container_(container) {
    // A window that gets the focus while the pointer is already here enters nothing.
    XSelectInput(connection_->display(), toplevel_, FocusChangeMask);
    connection_->setHandler(toplevel_, [this](const XEvent& event) {
        if (event.type == FocusIn && hasPointer_) {
            give();
        }
    });
}

X11Keyboard::~X11Keyboard() {
    takeBack();
    connection_->removeHandler(toplevel_);
    XSelectInput(connection_->display(), toplevel_, NoEventMask);
}

void X11Keyboard::handle(const XEvent& event) {
    // While a button is held or a menu is open the interface is still in use.
    if (event.xcrossing.detail == NotifyInferior || event.xcrossing.mode == NotifyGrab) {
        return;
    }
    hasPointer_ = event.type == EnterNotify;
    if (hasPointer_) {
        give();
    } else {
        takeBack();
    }
}

void X11Keyboard::give() {
    Window focus = None;
    int revert = 0;
    XGetInputFocus(connection_->display(), &focus, &revert);
    // Without a focus window the keys go where the pointer is anyway; in another toplevel they are
    // that one's.
    if (focus == None || focus == PointerRoot || focus == toplevel_ ||
        connection_->isInside(focus, container_) || !connection_->isInside(focus, toplevel_)) {
        return;
    }
    before_ = focus;
    XSetInputFocus(connection_->display(), toplevel_, RevertToParent, CurrentTime);
}

void X11Keyboard::takeBack() {
    Window focus = None;
    int revert = 0;
    XGetInputFocus(connection_->display(), &focus, &revert);
    const bool wasGiven = before_ != None && focus == toplevel_;
    if (wasGiven || (focus > PointerRoot && connection_->isInside(focus, container_))) {
        XSetInputFocus(connection_->display(), before_ == None ? toplevel_ : before_,
                       RevertToParent, CurrentTime);
        XFlush(connection_->display());
    }
    before_ = None;
}

}  // namespace orvalo
