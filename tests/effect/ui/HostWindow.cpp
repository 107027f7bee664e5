#include "tests/effect/ui/HostWindow.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace orvalo::testing {

std::uint32_t Pixels::at(double x, double y) const {
    const auto index = static_cast<std::size_t>(std::lround(y)) * static_cast<std::size_t>(width) +
                       static_cast<std::size_t>(std::lround(x));
    return values.at(index);
}

Pixels Pixels::part(const effect::ui::Rect& area) const {
    const int left = static_cast<int>(std::ceil(area.x));
    const int top = static_cast<int>(std::ceil(area.y));
    Pixels result{static_cast<int>(area.right()) - left, static_cast<int>(area.bottom()) - top, {}};
    for (int y = top; y < top + result.height; ++y) {
        for (int x = left; x < left + result.width; ++x) {
            result.values.push_back(at(x, y));
        }
    }
    return result;
}

std::size_t Pixels::count(std::uint32_t colour) const {
    return static_cast<std::size_t>(std::count(values.begin(), values.end(), colour));
}

HostWindow::HostWindow(int width, int height) : display_(XOpenDisplay(nullptr)) {
    if (display_ == nullptr) {
        throw std::runtime_error("no X server");
    }
    window_ = XCreateSimpleWindow(display_, DefaultRootWindow(display_), 0, 0,
                                  static_cast<unsigned>(width), static_cast<unsigned>(height), 0, 0,
                                  0xFF00FF);
    XSelectInput(display_, window_, KeyPressMask);
    show();
}

HostWindow::~HostWindow() {
    XCloseDisplay(display_);
}

void HostWindow::show() {
    XMapWindow(display_, window_);
    sync();
}

void HostWindow::hide() {
    XUnmapWindow(display_, window_);
    sync();
}

void HostWindow::destroy() {
    XDestroyWindow(display_, window_);
    sync();
}

Window HostWindow::child() const {
    Window root = 0;
    Window parent = 0;
    Window* children = nullptr;
    unsigned count = 0;
    XQueryTree(display_, window_, &root, &parent, &children, &count);
    const Window found = count == 1 ? children[0] : 0;
    XFree(children);
    return found;
}

Pixels HostWindow::pixels(Window window) const {
    XWindowAttributes attributes{};
    XGetWindowAttributes(display_, window, &attributes);
    XImage* image = XGetImage(display_, window, 0, 0, static_cast<unsigned>(attributes.width),
                              static_cast<unsigned>(attributes.height), AllPlanes, ZPixmap);
    Pixels pixels{attributes.width, attributes.height, {}};
    for (int y = 0; y < attributes.height; ++y) {
        for (int x = 0; x < attributes.width; ++x) {
            pixels.values.push_back(static_cast<std::uint32_t>(XGetPixel(image, x, y) & 0xFFFFFF));
        }
    }
    XDestroyImage(image);
    return pixels;
}

void HostWindow::movePointer(double x, double y) {
    XTestFakeMotionEvent(display_, -1, static_cast<int>(std::lround(x)),
                         static_cast<int>(std::lround(y)), CurrentTime);
    sync();
}

void HostWindow::button(unsigned number, bool down) {
    XTestFakeButtonEvent(display_, number, down ? True : False, CurrentTime);
    sync();
}

void HostWindow::click(double x, double y) {
    movePointer(x, y);
    button(Button1, true);
    button(Button1, false);
}

void HostWindow::key(KeySym symbol, bool down) {
    XTestFakeKeyEvent(display_, XKeysymToKeycode(display_, symbol), down ? True : False,
                      CurrentTime);
    sync();
}

void HostWindow::press(KeySym symbol) {
    const KeyCode code = XKeysymToKeycode(display_, symbol);
    const bool shifted = XkbKeycodeToKeysym(display_, code, 0, 0) != symbol;
    if (shifted) {
        key(XK_Shift_L, true);
    }
    key(symbol, true);
    key(symbol, false);
    if (shifted) {
        key(XK_Shift_L, false);
    }
}

void HostWindow::type(const char* text) {
    for (; *text != '\0'; ++text) {
        // KeySyms of ASCII characters equal the characters.
        press(static_cast<KeySym>(static_cast<unsigned char>(*text)));
    }
}

}  // namespace orvalo::testing
