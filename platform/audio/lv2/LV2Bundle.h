#pragma once

#include <filesystem>
#include <string>
#include <unordered_set>
#include <vector>

namespace orvalo {

/// Where bundles are looked for.
struct LV2SearchPath {
    std::vector<std::filesystem::path> folders;  ///< In order of preference.
    std::filesystem::path ownFolder;             ///< The application's own; comes last.
    /// Single bundles, in front of those of the folders.
    std::vector<std::filesystem::path> bundles{};

    /// LV2_PATH where it is set, else the folders that LV2 hosts search by default, and the own
    /// folder behind them. "~" and "$NAME" at the start of a folder are expanded.
    static LV2SearchPath fromEnvironment(std::filesystem::path ownFolder);
};

/// The vocabulary with which manifests state component codes: type, subtype and manufacturer (four
/// ASCII characters each), flags (an integer, 0 when absent) and name (text).
inline constexpr const char* kComponentVocabulary = "urn:tessaly:audio-component#";

/// What a manifest states in the component vocabulary.
struct LV2ComponentStatement {
    std::string plugin;  ///< The URI of the plug-in; empty for something without a URI.
    std::string key;     ///< The predicate without the vocabulary's URI.
    std::string value;   ///< The literal's text.
    bool isLiteral = true;
};

/// A folder with a manifest, and the statements of the manifest. lilv does not tell which bundle a
/// statement comes from, and needs twice the time to load a thousand manifests.
struct LV2Bundle {
    std::filesystem::path path;               ///< Canonical.
    std::string uri;                          ///< "file:///.../", with the closing slash.
    std::unordered_set<std::string> plugins;  ///< The URIs of the plug-ins that it holds.
    /// The URIs that it states something of, or has presets for; some repeatedly.
    std::vector<std::string> resources;
    std::vector<LV2ComponentStatement> codes;  ///< In the manifest's order.
};

/// The single bundles, then those of all the folders: folder after folder, by name within each,
/// each once. Folders that are not there are no error; a manifest that cannot be read is left out
/// with a warning. Where several bundles hold one plug-in, all but the first on the path lose
/// their statements of it, with a warning.
std::vector<LV2Bundle> findBundles(const LV2SearchPath& searchPath);

}  // namespace orvalo
