#pragma once

#include "platform/foundation/FatalError.h"

namespace orvalo {

/// What an optional or a reference holds; an absent value used as present ends the program. The
/// result lives as long as the argument.
template <typename Optional>
auto& unwrapped(Optional& value) {
    if (!value) {
        fatalError("Unexpectedly found nil while unwrapping an Optional value");
    }
    return *value;
}

}  // namespace orvalo
