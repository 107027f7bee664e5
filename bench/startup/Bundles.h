#pragma once

#include <filesystem>

namespace orvalo::bench {

/// Puts so many LV2 bundles into the folder, each with the data of one small effect of its own.
/// Their libraries are missing: nothing has a reason to load them.
void makeBundles(const std::filesystem::path& folder, int count);

}  // namespace orvalo::bench
