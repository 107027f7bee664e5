#pragma once

#include "animation/Impulse.h"

namespace orvalo {

/// The toolkit's own sight of an impulse: what its programs and tests show of it.
struct ImpulsePeer {
    static float value(const Impulse& impulse) { return impulse._value; }
    static float amount(const Impulse& impulse) { return impulse._amount; }
    static std::int64_t& step(Impulse& impulse) { return impulse._step; }
};

}  // namespace orvalo
