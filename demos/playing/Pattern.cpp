#include "demos/playing/Pattern.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace orvalo {

std::vector<Hit> spread(std::string_view pattern, int cellsPerQuarter, Metre metre, int bars) {
    const int cell = ticksPerQuarter / cellsPerQuarter;
    const int patternTicks = static_cast<int>(pattern.size()) * cell;
    const int wholeBars = std::max(1, patternTicks / metre.barTicks());
    const int roundTicks = wholeBars * metre.barTicks();
    const int loopTicks = bars * metre.barTicks();
    std::vector<Hit> hits;
    for (int round = 0; round < loopTicks; round += roundTicks) {
        bool holding = false;
        for (int inside = 0; inside < roundTicks && round + inside < loopTicks; inside += cell) {
            const char sign = pattern[static_cast<std::size_t>(inside / cell) % pattern.size()];
            if (sign == '-') {
                if (holding) {
                    hits.back().length += cell;
                }
            } else if (sign == '.') {
                holding = false;
            } else {
                hits.push_back({round + inside, cell, sign});
                holding = true;
            }
        }
    }
    return hits;
}

char stretched(std::string_view text, int tick, int loopTicks) {
    const auto place = static_cast<std::int64_t>(text.size()) * tick / loopTicks;
    return text[static_cast<std::size_t>(place)];
}

}  // namespace orvalo
