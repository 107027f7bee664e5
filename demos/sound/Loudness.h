#pragma once

#include "demos/sound/StereoSound.h"

namespace orvalo {

/// Integrated loudness of the loop as it sounds round and round, in LUFS (EBU R 128); -infinity for
/// silence. Throws std::runtime_error when libebur128 cannot measure. rate: frames a second.
double loudness(const StereoSound& loop, int rate);

/// Brings the loop to the loudness (LUFS), with no peak above the ceiling (linear). Throws
/// std::runtime_error for silence, or where the two cannot be had together within 0.2 LU.
void normalise(StereoSound& loop, int rate, double target, float ceiling);

}  // namespace orvalo
