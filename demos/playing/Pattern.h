#pragma once

#include <string_view>
#include <vector>

#include "demos/theory/Metre.h"

namespace orvalo {

/// A sounding sign of a pattern, at its position in the loop.
struct Hit {
    int tick;
    int length;  ///< ticks, including the '-' cells that follow
    char sign;   ///< any character but '.' and '-'
};

/// Repeats a pattern over the loop. Each character is a cell: '.' is silence, '-' holds the sign
/// before it, anything else is a hit. A pattern shorter than a bar repeats within each bar. A
/// longer one covers as many whole bars as it fills and then repeats; the rest of it is ignored.
/// Precondition: the pattern is not empty, cellsPerQuarter divides ticksPerQuarter.
std::vector<Hit> spread(std::string_view pattern, int cellsPerQuarter, Metre metre, int bars);

/// The character at a tick when the text is stretched over the loop: "ab" gives 'a' in the first
/// half. Precondition: text is not empty, 0 <= tick < loopTicks.
char stretched(std::string_view text, int tick, int loopTicks);

}  // namespace orvalo
