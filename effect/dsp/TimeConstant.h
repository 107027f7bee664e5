#pragma once

#include <cmath>

namespace orvalo::effect {

// In double, like the states that use them: at high sample rates and long times, a frame's change
// is below the precision of a float.

/// The factor by which an exponential approach shrinks its distance per frame. milliseconds: time
/// constant, above 0; sampleRate: frames per second.
inline double keptPerFrame(float milliseconds, double sampleRate) {
    return std::exp(-1000.0 / (static_cast<double>(milliseconds) * sampleRate));
}

/// 1 - keptPerFrame(), computed without cancellation.
inline double takenPerFrame(float milliseconds, double sampleRate) {
    return -std::expm1(-1000.0 / (static_cast<double>(milliseconds) * sampleRate));
}

}  // namespace orvalo::effect
