#pragma once

#include <cmath>

namespace orvalo {

/// A position in points from a top-left origin; y grows downwards.
struct CGPoint {
    double x = 0;
    double y = 0;
    friend bool operator==(const CGPoint&, const CGPoint&) = default;
};

/// A size in points.
struct CGSize {
    double width = 0;
    double height = 0;
    friend bool operator==(const CGSize&, const CGSize&) = default;
};

/// A rectangle in points. Position and size may be negative.
struct CGRect {
    CGPoint origin;
    CGSize size;

    CGRect() = default;
    CGRect(double x, double y, double width, double height) : origin{x, y}, size{width, height} {}

    // Of the rectangle in standard form: the same area with a size of at least 0.
    double minX() const { return size.width < 0 ? origin.x + size.width : origin.x; }
    double minY() const { return size.height < 0 ? origin.y + size.height : origin.y; }
    double width() const { return std::abs(size.width); }
    double height() const { return std::abs(size.height); }

    friend bool operator==(const CGRect&, const CGRect&) = default;
};

}  // namespace orvalo
