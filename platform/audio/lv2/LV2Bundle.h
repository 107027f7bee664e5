#pragma once

#include <filesystem>
#include <string>
#include <unordered_set>
#include <vector>

namespace orvalo {

/// Where to search for bundles.
struct LV2SearchPath {
    std::vector<std::filesystem::path> folders;  ///< In order of preference.
    std::filesystem::path ownFolder;             ///< The application's own; searched last.
    /// Single bundles, searched before the folders.
    std::vector<std::filesystem::path> bundles{};

    /// LV2_PATH where it is set, else the folders that LV2 hosts search by default, then ownFolder.
    /// "~" and "$NAME" at the start of a folder are expanded.
    static LV2SearchPath fromEnvironment(std::filesystem::path ownFolder);
};

/// The vocabulary with which manifests state component codes: type, subtype and manufacturer (four
/// ASCII characters each), flags (an integer, 0 when absent) and name (text).
inline constexpr const char* kComponentVocabulary = "urn:tessaly:audio-component#";

/// What a manifest states in the component vocabulary.
struct LV2ComponentStatement {
    std::string plugin;  ///< The URI of the plug-in; empty for a subject without a URI.
    std::string key;     ///< The predicate without the vocabulary's URI.
    std::string value;   ///< The literal's text.
    bool isLiteral = true;
};

/// A folder with a manifest, and the statements of the manifest. Read without lilv, which does not
/// report the bundle of a statement and needs twice the time for a thousand manifests.
struct LV2Bundle {
    std::filesystem::path path;               ///< Canonical.
    std::string uri;                          ///< "file:///.../", with the closing slash.
    std::unordered_set<std::string> plugins;  ///< The URIs of its plug-ins.
    /// The URIs of its subjects and of the plug-ins that its presets are for; may repeat.
    std::vector<std::string> resources;
    std::vector<LV2ComponentStatement> codes;  ///< In the manifest's order.
};

/// The single bundles, then those of all the folders: folder after folder, by name within each,
/// each once. A missing folder is not an error; a bundle whose manifest cannot be read is left out
/// with a warning. Where several bundles hold one plug-in, the first on the path wins: the
/// statements of the others about it are removed, with a warning.
std::vector<LV2Bundle> findBundles(const LV2SearchPath& searchPath);

/// The first fault in a file of a plug-in's data or presets, by its file URI; empty for a sound
/// file. Files are checked before lilv reads them: lilv keeps the first half of a broken file,
/// never returns from some that end early, and overflows the stack on deep nesting.
std::string turtleFileError(const std::string& uri);

}  // namespace orvalo
