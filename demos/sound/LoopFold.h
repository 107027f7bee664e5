#pragma once

#include <cstddef>

#include "demos/sound/StereoSound.h"

namespace orvalo {

/// Makes a loop of a sound that rings on beyond the loop's end: what rings on is added to the
/// start, and round again as often as it takes, as it would sound under the passes that follow.
/// Precondition: frames > 0.
StereoSound fold(const StereoSound& sound, std::size_t frames);

}  // namespace orvalo
