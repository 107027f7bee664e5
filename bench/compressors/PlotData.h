#pragma once

#include <filesystem>
#include <vector>

#include "bench/compressors/Measuring.h"

namespace orvalo::bench {

/// Writes the files that plots.gp draws: in each a row per point and a column per contender, with
/// the names in the first row. Throws std::runtime_error if a file cannot be written.
void writePlotData(const std::vector<Measuring>& all, const std::filesystem::path& folder);

}  // namespace orvalo::bench
