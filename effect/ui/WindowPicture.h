#pragma once

#include <X11/Xlib.h>
#include <cairo.h>

#include <vector>

#include "effect/ui/model/Rect.h"
#include "effect/ui/paint/CairoPointers.h"

namespace orvalo::effect::ui {

/// The back buffer of a window: drawn in memory, then copied to the window, so that drawing does
/// not flicker.
class WindowPicture {
  public:
    /// Do not call present() after the window is destroyed.
    WindowPicture(Display* display, Window window, Visual* visual);

    /// Returns true, with an empty picture, if the size has changed.
    bool resize(int width, int height);

    cairo_t* context() const { return context_.get(); }

    /// Copies the areas to the window.
    void present(const std::vector<Rect>& areas);

  private:
    int width_ = 0;
    int height_ = 0;
    Surface window_;
    Surface memory_;
    Context context_;
};

}  // namespace orvalo::effect::ui
