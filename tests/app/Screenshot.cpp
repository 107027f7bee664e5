#include "tests/app/Screenshot.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace orvalo::testing {

Screenshot::Screenshot() {
    auto* display = XOpenDisplay(nullptr);
    const auto root = DefaultRootWindow(display);
    width_ = DisplayWidth(display, DefaultScreen(display));
    height_ = DisplayHeight(display, DefaultScreen(display));
    auto* image = XGetImage(display, root, 0, 0, static_cast<unsigned>(width_),
                            static_cast<unsigned>(height_), AllPlanes, ZPixmap);
    pixels_.reserve(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
    for (int y = 0; y < height_; ++y) {
        for (int x = 0; x < width_; ++x) {
            pixels_.push_back(static_cast<std::uint32_t>(XGetPixel(image, x, y) & 0xFFFFFFU));
        }
    }
    XDestroyImage(image);
    XCloseDisplay(display);
}

int Screenshot::count(std::uint32_t color, int x, int y, int width, int height) const {
    int result = 0;
    for (int row = y; row < y + height; ++row) {
        for (int column = x; column < x + width; ++column) {
            result += at(column, row) == color ? 1 : 0;
        }
    }
    return result;
}

}  // namespace orvalo::testing
