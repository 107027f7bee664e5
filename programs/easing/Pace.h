#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace orvalo {

/// How long a run takes, and how often its timer ticks.
struct Pace {
    double duration = 1.5;    ///< Seconds.
    double interval = 0.005;  ///< Seconds.

    /// The run's length in frames, at least 1.
    std::int64_t frames() const {
        return std::max<std::int64_t>(1, std::llround(duration / interval));
    }
};

}  // namespace orvalo
