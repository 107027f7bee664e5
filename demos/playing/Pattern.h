#pragma once

#include <string_view>
#include <vector>

#include "demos/theory/Metre.h"

namespace orvalo {

/// One sign of a pattern that sounds, at its place in the loop.
struct Hit {
    int tick;
    int length;  ///< ticks: the cell, and those of the '-' that follow
    char sign;   ///< any character but '.' and '-'
};

/// Spreads a pattern over the loop. Each character is a cell: '.' is silence, '-' holds the sign
/// before it, anything else is a hit. A pattern shorter than a bar repeats within each bar; a
/// longer one runs over as many whole bars as it fills, then starts again; what does not fit is
/// left out. Precondition: the pattern is not empty, cellsPerQuarter divides ticksPerQuarter.
std::vector<Hit> spread(std::string_view pattern, int cellsPerQuarter, Metre metre, int bars);

/// The character of a short text that stands for a place in the loop, the text stretched over it:
/// "ab" gives 'a' in the first half. Precondition: text is not empty, 0 <= tick < loopTicks.
char stretched(std::string_view text, int tick, int loopTicks);

}  // namespace orvalo
