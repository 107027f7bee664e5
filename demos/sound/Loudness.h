#pragma once

#include "demos/sound/StereoSound.h"

namespace orvalo {

/// Integrated loudness of the repeated loop in LUFS (EBU R 128); -infinity for silence. rate:
/// frames per second. Throws std::runtime_error when libebur128 fails.
double loudness(const StereoSound& loop, int rate);

/// Scales and limits the loop to the target loudness (LUFS), with no peak above the ceiling
/// (linear). Throws std::runtime_error for silence, or when the loudness cannot be reached within
/// 0.2 LU.
void normalise(StereoSound& loop, int rate, double target, float ceiling);

}  // namespace orvalo
