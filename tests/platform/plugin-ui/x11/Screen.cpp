#include "tests/platform/plugin-ui/x11/Screen.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdlib>
#include <set>

#include "platform/plugin-ui/x11/X11Errors.h"
#include "tests/testing/TemporaryFolder.h"
#include "tests/testing/WaitUntil.h"
#include "tests/testing/XServer.h"

namespace orvalo::testing {

Display* screen() {
    static const XServer server;
    static const TemporaryFolder cache;
    static Display* const display = [] {
        setenv("XDG_CACHE_HOME", cache.path().c_str(), 1);
        auto* opened = XOpenDisplay(nullptr);
        // The tests also query destroyed windows.
        X11Errors::installHandler();
        X11Errors::ignore(opened, true);
        return opened;
    }();
    return display;
}

void runFor(int turns) {
    int left = turns;
    pollUntil([&left] { return --left < 0; });
}

X11Rect rectangleOf(unsigned long window) {
    auto* display = screen();
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(display, window, &attributes) == 0 ||
        attributes.map_state != IsViewable) {
        return {};
    }
    X11Rect result{0, 0, attributes.width, attributes.height};
    Window child = 0;
    XTranslateCoordinates(display, window, DefaultRootWindow(display), 0, 0, &result.x, &result.y,
                          &child);
    return result;
}

unsigned pixelAt(int x, int y) {
    auto* display = screen();
    auto* image = XGetImage(display, DefaultRootWindow(display), x, y, 1, 1, AllPlanes, ZPixmap);
    const auto pixel = static_cast<unsigned>(XGetPixel(image, 0, 0) & 0xFFFFFFU);
    XDestroyImage(image);
    return pixel;
}

std::size_t countColors(const X11Rect& area) {
    auto* display = screen();
    auto* image = XGetImage(display, DefaultRootWindow(display), area.x, area.y,
                            static_cast<unsigned>(area.width), static_cast<unsigned>(area.height),
                            AllPlanes, ZPixmap);
    std::set<unsigned long> colors;
    for (int x = 0; image != nullptr && x < area.width; x += 7) {
        for (int y = 0; y < area.height; y += 7) {
            colors.insert(XGetPixel(image, x, y));
        }
    }
    if (image != nullptr) {
        XDestroyImage(image);
    }
    return colors.size();
}

bool waitForRectangle(unsigned long window, const X11Rect& rectangle) {
    return pollUntil([&] { return rectangleOf(window) == rectangle; });
}

bool waitForColor(int x, int y, unsigned color) {
    return pollUntil([=] { return pixelAt(x, y) == color; });
}

unsigned long keyboardFocus() {
    Window focus = 0;
    int revert = 0;
    XGetInputFocus(screen(), &focus, &revert);
    return focus;
}

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
