#pragma once

#include <filesystem>
#include <string>

namespace orvalo {

/// The folder in the user's cache that an effect's services keep between starts, such as for
/// compiled shaders. Each effect has its own, because compiled shaders are code. It may be missing.
std::filesystem::path effectCacheFolder(const std::string& uri);

}  // namespace orvalo
