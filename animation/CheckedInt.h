#pragma once

#include <cstdint>

namespace orvalo {

/// The number cut to a whole one towards zero. Infinity, NaN and what lies beyond 64 bits end the
/// program with a message that says which.
std::int64_t checkedInt(float value);

}  // namespace orvalo
