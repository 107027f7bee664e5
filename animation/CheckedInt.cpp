#include "animation/CheckedInt.h"

#include <cmath>

#include "platform/foundation/FatalError.h"

namespace orvalo {

void failToConvert(float value) {
    if (!std::isfinite(value)) {
        fatalError("Float value cannot be converted to Int because it is either infinite or NaN");
    }
    if (value < 0) {
        fatalError(
            "Float value cannot be converted to Int because the result would be less than Int.min");
    }
    fatalError(
        "Float value cannot be converted to Int because the result would be greater than Int.max");
}

}  // namespace orvalo
