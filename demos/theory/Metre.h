#pragma once

namespace orvalo {

/// Ticks per quarter note, divisible by the cells per quarter of all patterns (2, 3, 4, 6, 8).
constexpr int ticksPerQuarter = 960;

/// A time signature, for example 6/8.
struct Metre {
    int count;  ///< beats in a bar, above 0
    int unit;   ///< note value: 2, 4, 8 or 16

    int barTicks() const { return count * unitTicks(); }
    int unitTicks() const { return 4 * ticksPerQuarter / unit; }
    /// The felt beat: a dotted quarter if the count is a multiple of three eighths, else a quarter.
    int beatTicks() const {
        return unit == 8 && count % 3 == 0 ? 3 * unitTicks() : ticksPerQuarter;
    }
    bool operator==(const Metre&) const = default;
};

}  // namespace orvalo
