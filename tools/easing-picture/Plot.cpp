#include "tools/easing-picture/Plot.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <ostream>

#include "animation/EasingCurve.h"

namespace orvalo::picture {

namespace {

/// A step that no curve without a jump takes in one frame.
constexpr double leap = 0.25;

}  // namespace

Plot::Plot(std::size_t number) {
    for (std::size_t frame = 0; frame <= frames; ++frame) {
        values_.push_back(static_cast<double>(
            easingCurves.at(number)(static_cast<std::int64_t>(frame), 0, 1, frames)));
    }
}

double Plot::lowest() const {
    return std::min(0.0, *std::min_element(values_.begin(), values_.end()));
}

double Plot::highest() const {
    return std::max(1.0, *std::max_element(values_.begin(), values_.end()));
}

void Plot::draw(std::ostream& svg, double x, double y) const {
    const auto placeOf = [&](std::size_t frame) -> std::ostream& {
        return svg << x + static_cast<double>(frame) << ' ' << y - way * values_[frame];
    };
    for (const double level : {y, y - way}) {
        svg << "<path class='level' d='M" << x << ' ' << level << 'h' << width << "'/>\n";
    }
    svg << "<path class='curve' d='";
    for (std::size_t frame = 0; frame <= frames; ++frame) {
        const bool isLeap = frame > 0 && std::abs(values_[frame] - values_[frame - 1]) > leap;
        svg << (frame == 0 || isLeap ? "M" : "L");
        placeOf(frame);
    }
    svg << "'/>\n";
    for (std::size_t frame = 1; frame <= frames; ++frame) {
        if (std::abs(values_[frame] - values_[frame - 1]) > leap) {
            svg << "<path class='leap' d='M";
            placeOf(frame - 1) << 'L';
            placeOf(frame) << "'/>\n";
        }
    }
    for (const std::size_t end : {std::size_t{0}, frames}) {
        svg << "<circle class='" << (end == 0 ? "start" : "end") << "' r='3.5' cx='"
            << x + static_cast<double>(end) << "' cy='" << y - way * values_[end] << "'/>\n";
    }
}

}  // namespace orvalo::picture
