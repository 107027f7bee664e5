#pragma once

#include <cstdint>

#include "platform/foundation/Checked.h"

namespace orvalo {

/// A family's Out-In curve: its Out curve over the first half of the frames and of the change, its
/// In curve over the second. The halves part at a whole frame, and the doubled frame runs a whole
/// curve over each. out, in: called as an EasingCurve is. A doubled frame beyond 64 bits is a fatal
/// error.
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
