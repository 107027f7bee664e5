#include "bench/window/Desktop.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace orvalo::bench {

struct Desktop::Connection {
    Display* display;
};

Desktop::Desktop()
    : manager_({"openbox", "--sm-disable"}), connection_(new Connection{XOpenDisplay(nullptr)}) {}

Desktop::~Desktop() {
    XCloseDisplay(connection_->display);
    delete connection_;
}

int Desktop::count(std::uint32_t color) const {
    auto* display = connection_->display;
    const int screen = DefaultScreen(display);
    const int width = DisplayWidth(display, screen);
    const int height = DisplayHeight(display, screen);
    auto* image = XGetImage(display, DefaultRootWindow(display), 0, 0, static_cast<unsigned>(width),
                            static_cast<unsigned>(height), AllPlanes, ZPixmap);
    int result = 0;
    for (int y = 0; y < height; y += 4) {
        for (int x = 0; x < width; x += 4) {
            result += (XGetPixel(image, x, y) & 0xFFFFFFU) == color ? 1 : 0;
        }
    }
    XDestroyImage(image);
    return result;
}

unsigned long Desktop::activeWindow() const {
    auto* display = connection_->display;
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* value = nullptr;
    XGetWindowProperty(display, DefaultRootWindow(display),
                       XInternAtom(display, "_NET_ACTIVE_WINDOW", False), 0, 1, False,
                       AnyPropertyType, &type, &format, &count, &rest, &value);
    const auto window = count == 0 ? None : *reinterpret_cast<unsigned long*>(value);
    XFree(value);
    return window;
}

void Desktop::typeControlE() const {
    auto* display = connection_->display;
    const unsigned control = XKeysymToKeycode(display, XK_Control_L);
    const unsigned e = XKeysymToKeycode(display, XK_e);
    XTestFakeKeyEvent(display, control, True, CurrentTime);
    XTestFakeKeyEvent(display, e, True, CurrentTime);
    XTestFakeKeyEvent(display, e, False, CurrentTime);
    XTestFakeKeyEvent(display, control, False, CurrentTime);
    XSync(display, False);
}

}  // namespace orvalo::bench
