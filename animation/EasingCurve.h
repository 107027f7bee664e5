#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "animation/EnumEasing.h"

namespace orvalo {

/// A curve: the value at currentFrame of a way that begins with sourceValue at frame 0 and has
/// changed by amount at frame numFrames. A pure function, in single precision, in the order in
/// which it is written. Frames outside 0 to numFrames continue the formula, and no frames at all
/// divide by zero: the result is then infinite or no number. Any thread.
using EasingCurve = float (*)(std::int64_t currentFrame, float sourceValue, float amount,
                              std::int64_t numFrames);

constexpr auto easingCount = static_cast<std::size_t>(EnumEasing::EASING_easeLast);

/// Every curve at its number in EnumEasing. Fatal errors: Out-In curves whose doubled frame is
/// beyond 64 bits, and Bounce curves whose frames, as floats, are (see checkedInt).
extern const std::array<EasingCurve, easingCount> easingCurves;

}  // namespace orvalo
