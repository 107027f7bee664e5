#pragma once

#include <utility>

#include "animation/Impulse.h"

namespace orvalo {

/// The toolkit's own sight of an impulse: what its programs and tests show of it.
struct ImpulsePeer {
    static float value(const Impulse& impulse) { return impulse._value; }
    static float amount(const Impulse& impulse) { return impulse._amount; }
    static float interval(const Impulse& impulse) { return impulse._interval; }
    static std::pair<float, float> bounds(const Impulse& impulse) {
        return {impulse._minVal, impulse._maxVal};
    }
    static std::int64_t& step(Impulse& impulse) { return impulse._step; }
};

}  // namespace orvalo
