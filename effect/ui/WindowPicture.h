#pragma once

#include <X11/Xlib.h>
#include <cairo.h>

#include <vector>

#include "effect/ui/model/Rect.h"
#include "effect/ui/paint/CairoPointers.h"

namespace orvalo::effect::ui {

/// The picture of a window in memory: drawn here, then copied to the window in one go, so that
/// nobody sees it grow.
class WindowPicture {
  public:
    /// The window must outlive the picture, or presenting must end with it.
    WindowPicture(Display* display, Window window, Visual* visual);

    /// True when the size is new: then the picture is empty.
    bool resize(int width, int height);

    cairo_t* context() const { return context_.get(); }

    /// Shows these areas in the window.
    void present(const std::vector<Rect>& areas);

  private:
    int width_ = 0;
    int height_ = 0;
    Surface window_;
    Surface memory_;
    Context context_;
};

}  // namespace orvalo::effect::ui
