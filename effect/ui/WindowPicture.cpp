#include "effect/ui/WindowPicture.h"

#include <cairo-xlib.h>

namespace orvalo::effect::ui {

WindowPicture::WindowPicture(Display* display, Window window, Visual* visual)
    : window_(cairo_xlib_surface_create(display, window, visual, 1, 1)) {}

bool WindowPicture::resize(int width, int height) {
    if (width == width_ && height == height_) {
        return false;
    }
    width_ = width;
    height_ = height;
    cairo_xlib_surface_set_size(window_.get(), width, height);
    context_.reset();
    memory_.reset(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
    context_.reset(cairo_create(memory_.get()));
    return true;
}

void WindowPicture::present(const std::vector<Rect>& areas) {
    cairo_surface_flush(memory_.get());
    const Context target(cairo_create(window_.get()));
    for (const Rect& area : areas) {
        cairo_rectangle(target.get(), area.x, area.y, area.width, area.height);
    }
    cairo_clip(target.get());
    cairo_set_operator(target.get(), CAIRO_OPERATOR_SOURCE);
    cairo_set_source_surface(target.get(), memory_.get(), 0.0, 0.0);
    cairo_paint(target.get());
    cairo_surface_flush(window_.get());
}

}  // namespace orvalo::effect::ui
