#include "demos/playing/Feel.h"

#include <algorithm>

#include "demos/playing/Pattern.h"

namespace orvalo {

int strengthOf(char sign) {
    switch (sign) {
        case 'X':
            return 120;
        case 'o':
            return 78;
        case 'f':
            return 60;
        case 'g':
        case '?':
            return 44;
        default:
            return 100;
    }
}

Feel::Feel(const Style& style, std::string_view dynamics, Metre metre, int loopTicks)
    : style_(style), dynamics_(dynamics), metre_(metre), loopTicks_(loopTicks) {}

int Feel::place(int tick, int cellsPerQuarter, Random& random) const {
    int placed = tick;
    const int cell = ticksPerQuarter / cellsPerQuarter;
    const bool pairs = cellsPerQuarter % 3 != 0;
    if (style_.swing > 0 && pairs) {
        const int inPair = tick % (2 * cell);
        if (inPair >= cell) {
            placed += (2 * cell - inPair) * style_.swing / 100;
        }
    }
    if (style_.loose > 0) {
        placed += random.between(-style_.loose, style_.loose);
    }
    return std::clamp(placed, 0, loopTicks_ - 1);
}

int Feel::velocity(int strength, int tick, Random& random) const {
    const int loudness = stretched(dynamics_, tick, loopTicks_) - '0';
    // From a quarter of the strength at '1' to the full strength at '9'.
    int velocity = strength * (160 + 93 * loudness) / 1000;
    const int inBar = tick % metre_.barTicks();
    if (inBar == 0) {
        velocity += 5;
    } else if (inBar % metre_.beatTicks() != 0) {
        velocity -= 4;
    }
    if (style_.loose > 0) {
        velocity += random.between(-5, 5);
    }
    return std::clamp(velocity, 1, 127);
}

}  // namespace orvalo
