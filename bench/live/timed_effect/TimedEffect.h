#pragma once

#include <cstdint>

namespace orvalo::bench {

/// The symbol of a function of type RunNanoseconds: the total time of the effect's run() calls, in
/// ns of wall-clock time. Render thread.
inline constexpr auto runNanosecondsSymbol = "orvalo_bench_run_nanoseconds";
using RunNanoseconds = std::int64_t (*)();

/// The effect's own library, beside this one in the bundle.
inline constexpr auto effectLibrary = "effect.so";

}  // namespace orvalo::bench
