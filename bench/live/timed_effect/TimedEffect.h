#pragma once

#include <cstdint>

namespace orvalo::bench {

/// The name under which the library gives a function of this type: how long the effect has run for
/// in all, in ns of passing time. For the render thread.
inline constexpr auto runNanosecondsSymbol = "orvalo_bench_run_nanoseconds";
using RunNanoseconds = std::int64_t (*)();

/// The effect's own library, beside this one in the bundle.
inline constexpr auto effectLibrary = "effect.so";

}  // namespace orvalo::bench
