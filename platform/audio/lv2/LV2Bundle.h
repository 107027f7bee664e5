#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orvalo {

/// A folder on the search path that has a manifest.
struct LV2Bundle {
    std::filesystem::path path;  ///< Canonical.
    std::string uri;             ///< "file:///.../", with the closing slash.
    std::string manifest;        ///< The manifest's bytes.
};

/// Where bundles are looked for.
struct LV2SearchPath {
    std::vector<std::filesystem::path> folders;  ///< In order of preference.
    std::filesystem::path ownFolder;             ///< The application's own; comes last.
    /// Single bundles, in front of those of the folders.
    std::vector<std::filesystem::path> bundles{};

    /// LV2_PATH where it is set, else the folders that LV2 hosts search by default, and the own
    /// folder behind them. "~" and "$NAME" at the start of a folder stand for what they name.
    static LV2SearchPath fromEnvironment(std::filesystem::path ownFolder);
};

/// The single bundles, then those of all the folders: folder after folder, by name within each,
/// each once. Folders that are not there are no error; a manifest that cannot be read is reported
/// and left out.
std::vector<LV2Bundle> findBundles(const LV2SearchPath& searchPath);

}  // namespace orvalo
