#include "tests/platform/plugin-ui/x11/Toplevel.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <utility>

#include "tests/platform/plugin-ui/x11/Screen.h"

namespace orvalo::testing {

Toplevel::Toplevel() {
    auto* display = screen();
    XSetWindowAttributes attributes{};
    attributes.override_redirect = True;
    attributes.background_pixel = 0x202020;
    attributes.event_mask = KeyPressMask;
    window_ = XCreateWindow(display, DefaultRootWindow(display), 100, 100, 800, 600, 0,
                            CopyFromParent, InputOutput, nullptr,
                            CWOverrideRedirect | CWBackPixel | CWEventMask, &attributes);
    XMapWindow(display, window_);
    XSync(display, False);
}

Toplevel::~Toplevel() {
    destroy();
}

void Toplevel::destroy() {
    if (const auto window = std::exchange(window_, 0); window != 0) {
        XDestroyWindow(screen(), window);
        XSync(screen(), True);
    }
}

void Toplevel::lower() const {
    XLowerWindow(screen(), window_);
    XSync(screen(), False);
}

unsigned long Toplevel::focusInside() const {
    auto* display = screen();
    const auto inside = XCreateSimpleWindow(display, window_, 0, 0, 1, 1, 0, 0, 0);
    XSelectInput(display, inside, KeyPressMask);
    XMapWindow(display, inside);
    XSetInputFocus(display, inside, RevertToParent, CurrentTime);
    XSync(display, False);
    return inside;
}

std::vector<unsigned long> Toplevel::takeKeys() {
    auto* display = screen();
    std::vector<unsigned long> keys;
    XSync(display, False);
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == KeyPress) {
            keys.push_back(XLookupKeysym(&event.xkey, 0));
        }
    }
    return keys;
}

}  // namespace orvalo::testing
