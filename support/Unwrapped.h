#pragma once

#include "platform/foundation/FatalError.h"

namespace orvalo {

/// The value of an optional or a pointer; absence is a fatal error. The result lives as long as the
/// argument.
template <typename Optional>
auto& unwrapped(Optional& value) {
    if (!value) {
        fatalError("Unexpectedly found nil while unwrapping an Optional value");
    }
    return *value;
}

}  // namespace orvalo
