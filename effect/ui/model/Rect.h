#pragma once

#include <algorithm>
#include <cmath>

namespace orvalo::effect::ui {

/// An area of the window in pixels; the origin is the top left corner.
struct Rect {
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;

    double right() const { return x + width; }
    double bottom() const { return y + height; }
    double centerX() const { return x + 0.5 * width; }
    double centerY() const { return y + 0.5 * height; }
    bool isEmpty() const { return width <= 0.0 || height <= 0.0; }

    bool contains(double px, double py) const {
        return px >= x && px < right() && py >= y && py < bottom();
    }

    bool intersects(const Rect& other) const {
        return x < other.right() && other.x < right() && y < other.bottom() && other.y < bottom();
    }

    /// Shrunk on each side, or grown for negative values. The size is never negative.
    Rect inset(double horizontal, double vertical) const {
        return {x + horizontal, y + vertical, std::max(0.0, width - 2.0 * horizontal),
                std::max(0.0, height - 2.0 * vertical)};
    }

    /// Rounded to whole pixels, for sharp edges.
    Rect sharp() const {
        const double left = std::round(x);
        const double top = std::round(y);
        return {left, top, std::max(0.0, std::round(right()) - left),
                std::max(0.0, std::round(bottom()) - top)};
    }

    bool operator==(const Rect&) const = default;
};

}  // namespace orvalo::effect::ui
