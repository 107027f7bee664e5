#pragma once

// Before X11, whose macros collide with names of GoogleTest.
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdint>
#include <vector>

#include "effect/ui/model/Rect.h"

namespace orvalo::testing {

/// The pixels of an area of a window, row by row, each as 0xRRGGBB.
struct Pixels {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> values;

    bool operator==(const Pixels&) const = default;
    std::uint32_t at(double x, double y) const;
    /// The pixels of a part of the area.
    Pixels part(const effect::ui::Rect& area) const;
    /// The number of pixels of exactly this colour.
    std::size_t count(std::uint32_t colour) const;
};

/// A host window at the screen's origin, and simulated user input. Without a window manager, so
/// that window coordinates are screen coordinates.
class HostWindow {
  public:
    HostWindow(int width, int height);
    ~HostWindow();
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    Display* display() const { return display_; }
    Window id() const { return window_; }
    void show();
    void hide();
    void destroy();

    /// The embedded window, once it exists.
    Window child() const;
    Pixels pixels(Window window) const;

    void movePointer(double x, double y);
    void button(unsigned number, bool down);
    void click(double x, double y);
    void key(KeySym symbol, bool down);
    /// Presses and releases a key, with Shift where the symbol needs it.
    void press(KeySym symbol);
    void type(const char* text);

  private:
    void sync() const { XSync(display_, False); }

    Display* display_;
    Window window_;
};

}  // namespace orvalo::testing
