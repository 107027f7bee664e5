#pragma once

#include <cstdint>

namespace orvalo::testing {

/// How often this program allocated or freed memory inside a RealTimeScope so far.
std::uint64_t allocationsInRealTime();

}  // namespace orvalo::testing
