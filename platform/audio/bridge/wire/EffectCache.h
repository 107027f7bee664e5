#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace orvalo {

/// The folder in the user's cache that an effect's services keep between starts, such as for
/// compiled shaders. Each effect has its own, because compiled shaders are code. It may be missing.
std::filesystem::path effectCacheFolder(const std::string& uri);

/// Whether an effect's cache takes more bytes on the disk than the limit. One that cannot be read
/// counts as larger.
bool isEffectCacheLarger(const std::filesystem::path& folder, std::uint64_t limit);

/// Removes an effect's cache while no service has it, also where folders in it are locked.
void removeEffectCache(const std::filesystem::path& folder);

}  // namespace orvalo
