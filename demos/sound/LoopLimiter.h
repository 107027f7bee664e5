#pragma once

#include "demos/sound/StereoSound.h"

namespace orvalo {

/// Limits the loop's samples, and the curve between them, to the ceiling (linear, above 0). The
/// gain falls before a peak and rises after it within a few milliseconds, and wraps at the loop's
/// ends, so that the seam stays smooth. A loop without such peaks is unchanged.
void limit(StereoSound& loop, float ceiling);

}  // namespace orvalo
