#pragma once

#include <cmath>

namespace orvalo::effect {

// In double, as are the states that they drive: at high rates and long times a frame moves by less
// than a float can tell.

/// What an exponential approach keeps of its distance in one frame, for a time constant in
/// milliseconds above 0 and a rate in frames a second.
inline double keptPerFrame(float milliseconds, double sampleRate) {
    return std::exp(-1000.0 / (static_cast<double>(milliseconds) * sampleRate));
}

/// What the same approach takes of its aim in one frame: the rest, without cancellation.
inline double takenPerFrame(float milliseconds, double sampleRate) {
    return -std::expm1(-1000.0 / (static_cast<double>(milliseconds) * sampleRate));
}

}  // namespace orvalo::effect
