#pragma once

#include <algorithm>

namespace orvalo {

/// A size in the X server's pixels.
struct X11Size {
    int width = 0;
    int height = 0;

    friend bool operator==(const X11Size&, const X11Size&) = default;
};

/// A rectangle in the X server's pixels, from the top left.
struct X11Rect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    X11Size size() const { return {width, height}; }
    bool isEmpty() const { return width <= 0 || height <= 0; }

    friend bool operator==(const X11Rect&, const X11Rect&) = default;
};

/// The common part; empty when there is none.
inline X11Rect intersection(const X11Rect& one, const X11Rect& other) {
    const int left = std::max(one.x, other.x);
    const int top = std::max(one.y, other.y);
    const int right = std::min(one.x + one.width, other.x + other.width);
    const int bottom = std::min(one.y + one.height, other.y + other.height);
    return {left, top, std::max(0, right - left), std::max(0, bottom - top)};
}

}  // namespace orvalo
