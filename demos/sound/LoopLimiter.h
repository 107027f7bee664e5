#pragma once

#include "demos/sound/StereoSound.h"

namespace orvalo {

/// Keeps the loop's samples, and the curve between them, at or below the ceiling (linear, above 0):
/// the gain bows down ahead of a peak and back behind it within a few milliseconds, and wraps round
/// the loop, so that the loop's join stays as it was. A loop without such peaks is left untouched.
void limit(StereoSound& loop, float ceiling);

}  // namespace orvalo
