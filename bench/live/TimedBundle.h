#pragma once

#include <filesystem>

#include "bench/live/timed_effect/TimedEffect.h"

namespace orvalo::bench {

/// Copies the stage's effect into the folder with a timer around its run(), and makes the copy the
/// only Orvalo effect on this process's LV2_PATH. Call it before the first effect is searched.
/// Returns the timer's reading function. Throws std::runtime_error when the copy does not load.
RunNanoseconds installTimedEffect(const std::filesystem::path& folder);

}  // namespace orvalo::bench
