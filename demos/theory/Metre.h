#pragma once

namespace orvalo {

/// Ticks in a quarter note: divisible by the cells of all patterns (2, 3, 4, 6 and 8 a quarter).
constexpr int ticksPerQuarter = 960;

/// How a bar is counted, for example 6/8.
struct Metre {
    int count;  ///< notes in a bar, above 0
    int unit;   ///< which note: 2, 4, 8 or 16

    int barTicks() const { return count * unitTicks(); }
    int unitTicks() const { return 4 * ticksPerQuarter / unit; }
    /// The felt beat: three units where the count is a multiple of three eighths, else the quarter.
    int beatTicks() const {
        return unit == 8 && count % 3 == 0 ? 3 * unitTicks() : ticksPerQuarter;
    }
    bool operator==(const Metre&) const = default;
};

}  // namespace orvalo
