#include "platform/plugin-ui/x11/X11SizeRules.h"

#include <algorithm>
#include <cstdint>

namespace orvalo {

namespace {

// The UI sets the hints, which may be any numbers.
int clamped(int length, int smallest, int largest) {
    return std::min(std::max(std::min(length, largest), std::max(1, smallest)),
                    X11SizeRules::kNoLimit);
}

X11Size clamped(X11Size size, const X11SizeRules& rules) {
    return {clamped(size.width, rules.smallest.width, rules.largest.width),
            clamped(size.height, rules.smallest.height, rules.largest.height)};
}

int scaled(int value, int numerator, int denominator) {
    return static_cast<int>(std::int64_t{value} * numerator / denominator);
}

}  // namespace

bool X11SizeRules::isFixed() const {
    return isStatedFixed || (smallest.width >= largest.width && smallest.height >= largest.height);
}

X11Size X11SizeRules::fit(X11Size area) const {
    if (isFixed()) {
        return clamped(requested, *this);
    }
    auto size = clamped(area, *this);
    if (widest &&
        std::int64_t{size.width} * widest->height > std::int64_t{size.height} * widest->width) {
        size.width = scaled(size.height, widest->width, widest->height);
    } else if (narrowest && std::int64_t{size.width} * narrowest->height <
                                std::int64_t{size.height} * narrowest->width) {
        size.height = scaled(size.width, narrowest->height, narrowest->width);
    }
    return clamped(size, *this);
}

X11Size X11SizeRules::minimumSize() const {
    return isFixed() ? clamped(requested, *this) : clamped({1, 1}, *this);
}

}  // namespace orvalo
