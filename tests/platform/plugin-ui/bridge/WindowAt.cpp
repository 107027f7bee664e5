#include "tests/platform/plugin-ui/bridge/WindowAt.h"

#include <X11/Xlib.h>

#include "tests/platform/plugin-ui/x11/Screen.h"

namespace orvalo::testing {

unsigned long windowAt(int x, int y) {
    auto* display = screen();
    const auto root = DefaultRootWindow(display);
    unsigned long window = root;
    for (unsigned long child = root; child != 0;) {
        window = child;
        int inX = 0;
        int inY = 0;
        if (XTranslateCoordinates(display, root, window, x, y, &inX, &inY, &child) == False) {
            return 0;
        }
    }
    return window;
}

unsigned long parentWindowAt(int x, int y) {
    Window root = 0;
    Window parent = 0;
    Window* children = nullptr;
    unsigned count = 0;
    if (XQueryTree(screen(), windowAt(x, y), &root, &parent, &children, &count) != 0) {
        XFree(children);
    }
    return parent;
}

}  // namespace orvalo::testing
