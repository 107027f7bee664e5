#include "animation/CheckedInt.h"

#include <cmath>

#include "platform/foundation/FatalError.h"

namespace orvalo {

std::int64_t checkedInt(float value) {
    constexpr float belowInts = -9223373136366403584.0f;  // The next float below -2^63.
    constexpr float aboveInts = 9223372036854775808.0f;   // 2^63.
    if (!std::isfinite(value)) {
        fatalError("Float value cannot be converted to Int because it is either infinite or NaN");
    }
    if (value <= belowInts) {
        fatalError(
            "Float value cannot be converted to Int because the result would be less than Int.min");
    }
    if (value >= aboveInts) {
        fatalError(
            "Float value cannot be converted to Int because the result would be greater than "
            "Int.max");
    }
    return static_cast<std::int64_t>(value);
}

}  // namespace orvalo
