#pragma once

#include <string>
#include <utility>
#include <vector>

#include "bench/compressors/Effect.h"

namespace orvalo::bench {

/// A contender, and its controls for the settings of the measurements.
struct Contender {
    std::string name;
    std::string uri;
    /// Threshold -20 dB, ratio 4:1, hard knee, attack 10 ms, release 120 ms, no make-up; as near as
    /// the controls allow.
    Settings normal;
    /// What differs for the fastest times: attack 0.1 ms, release 45 ms.
    Settings fast;
    /// The lowest peaks that it can keep below -6 dB.
    Settings ceiling;
};

/// The settings with some changed or added.
Settings joined(Settings settings, const Settings& changes);

/// All that are compared, installed or not.
std::vector<Contender> contenders();

/// Additions to Orvalo's controls, each alone, by a short name.
std::vector<std::pair<std::string, Settings>> additions();

}  // namespace orvalo::bench
