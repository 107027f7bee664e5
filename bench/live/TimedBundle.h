#pragma once

#include <filesystem>

#include "bench/live/timed_effect/TimedEffect.h"

namespace orvalo::bench {

/// Puts a copy of the stage's effect whose run() is timed into the folder, and makes it the only
/// Orvalo effect on this process's LV2_PATH. Before anything looks for effects.
/// Returns what tells the time spent. Throws std::runtime_error when that fails.
RunNanoseconds installTimedEffect(const std::filesystem::path& folder);

}  // namespace orvalo::bench
