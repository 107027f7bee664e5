#include "tests/app/Screenshot.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <cairo.h>

#include <cstring>
#include <stdexcept>

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

Screenshot::Screenshot(const std::filesystem::path& file) {
    auto* image = cairo_image_surface_create_from_png(file.c_str());
    if (cairo_surface_status(image) != CAIRO_STATUS_SUCCESS) {
        throw std::runtime_error(file.string() + " is no PNG file.");
    }
    width_ = cairo_image_surface_get_width(image);
    height_ = cairo_image_surface_get_height(image);
    // One native 32-bit word per pixel in both of the formats that opaque and other files give.
    const auto* row = cairo_image_surface_get_data(image);
    for (int y = 0; y < height_; ++y, row += cairo_image_surface_get_stride(image)) {
        for (int x = 0; x < width_; ++x) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, row + static_cast<std::size_t>(x) * sizeof pixel, sizeof pixel);
            pixels_.push_back(pixel & 0xFFFFFFU);
        }
    }
    cairo_surface_destroy(image);
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
