#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "animation/EnumEasing.h"
#include "platform/foundation/Checked.h"

namespace orvalo {

/// A curve: the value at currentFrame, which is sourceValue at frame 0 and sourceValue + amount at
/// frame numFrames. Pure, in single precision, in the order in which the formula is written. Frames
/// outside 0 to numFrames extrapolate. With numFrames = 0 the result is infinite or NaN. Any
/// thread.
using EasingCurve = float (*)(std::int64_t currentFrame, float sourceValue, float amount,
                              std::int64_t numFrames);

constexpr auto easingCount = static_cast<std::size_t>(EnumEasing::EASING_easeLast);

/// The curves, indexed by their raw value in EnumEasing. Fatal errors: in Out-In curves a doubled
/// frame beyond 64 bits; in Bounce curves a frame that, as a float, does not fit 64 bits.
extern const std::array<EasingCurve, easingCount> easingCurves;

/// The curve's name, such as "easeInOutQuad"; empty for the end marker and for invalid values.
std::string easingName(EnumEasing type);

/// An Out-In curve: out over the first half of the frames and of the change, in over the second.
/// The halves split at a whole frame; the doubled frame runs a whole curve over each half. out, in:
/// called like an EasingCurve. A doubled frame beyond 64 bits is a fatal error.
template <typename Out, typename In>
float outIn(const Out& out, const In& in, std::int64_t currentFrame, float sourceValue,
            float amount, std::int64_t numFrames) {
    const auto doubled = checkedMultiply<std::int64_t>(currentFrame, 2);
    if (currentFrame < numFrames / 2) {
        return out(doubled, sourceValue, amount / 2, numFrames);
    }
    return in(checkedSubtract(doubled, numFrames), sourceValue + amount / 2, amount / 2, numFrames);
}

}  // namespace orvalo
