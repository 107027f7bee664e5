#pragma once

namespace orvalo::testing {

/// How many calls of malloc, free and their kin, or of a mutex's lock, this program has made inside
/// a RealTimeScope.
int forbiddenCalls();

}  // namespace orvalo::testing
