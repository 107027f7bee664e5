#pragma once

#include <filesystem>

namespace orvalo::bench {

/// Writes that many LV2 bundles into the folder, each with the data of one small effect but without
/// its library, which no program loads.
void makeBundles(const std::filesystem::path& folder, int count);

}  // namespace orvalo::bench
