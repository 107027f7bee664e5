#include "platform/audio/lv2/LV2Bundle.h"

#include <glib.h>

#include <algorithm>
#include <unordered_set>

#include "platform/audio/lv2/TurtleFile.h"

namespace orvalo {

namespace {

namespace fs = std::filesystem;

// The folders of the Filesystem Hierarchy Standard that lilv searches on Debian.
constexpr const char* kDefaultPath =
    "~/.lv2:/usr/lib/" ORVALO_LIBRARY_ARCHITECTURE "/lv2:/usr/lib/lv2:/usr/local/lib/lv2";

// Real manifests have a few kilobytes. A larger one than this is no manifest.
constexpr std::size_t kLargestManifest = 4U << 20U;

std::string expanded(const std::string& folder) {
    if (folder == "~" || folder.starts_with("~/")) {
        return g_get_home_dir() + folder.substr(1);
    }
    if (folder.starts_with('$')) {
        const auto end = std::min(folder.find('/'), folder.size());
        const char* value = g_getenv(folder.substr(1, end - 1).c_str());
        return value == nullptr ? folder : value + folder.substr(end);
    }
    return folder;
}

std::string bundleURI(const std::string& path) {
    gchar* text = g_filename_to_uri((path + "/").c_str(), nullptr, nullptr);
    std::string uri = text == nullptr ? std::string() : text;
    g_free(text);
    return uri;
}

/// The folder's items by name, as they are called where no link leads to them.
std::vector<std::string> items(const fs::path& folder) {
    std::vector<std::string> result;
    std::error_code error;
    const auto place = fs::canonical(folder, error);
    for (fs::directory_iterator item(place, error), end; !error && item != end;
         item.increment(error)) {
        result.push_back(item->path().native());
        // Resolving each of a thousand names would take longer than reading them.
        std::error_code dangling;
        if (item->is_symlink(dangling)) {
            const auto target = fs::canonical(item->path(), dangling);
            if (!dangling) {
                result.back() = target.native();
            }
        }
    }
    if (error && error != std::errc::no_such_file_or_directory) {
        g_warning("%s cannot be searched: %s.", folder.c_str(), error.message().c_str());
    }
    std::sort(result.begin(), result.end());
    return result;
}

}  // namespace

LV2SearchPath LV2SearchPath::fromEnvironment(std::filesystem::path ownFolder) {
    LV2SearchPath result;
    const char* path = g_getenv("LV2_PATH");
    gchar** folders = g_strsplit(path == nullptr ? kDefaultPath : path, ":", -1);
    for (gchar** folder = folders; *folder != nullptr; ++folder) {
        if (**folder != '\0') {
            result.folders.emplace_back(expanded(*folder));
        }
    }
    g_strfreev(folders);
    result.ownFolder = std::move(ownFolder);
    return result;
}

std::vector<LV2Bundle> findBundles(const LV2SearchPath& searchPath) {
    std::vector<fs::path> folders = searchPath.folders;
    folders.push_back(searchPath.ownFolder);
    std::vector<LV2Bundle> bundles;
    std::unordered_set<std::string> seen;
    const auto add = [&](const std::string& path) {
        auto manifest = readTurtle(path + "/manifest.ttl", kLargestManifest);
        if (manifest && seen.insert(path).second) {
            bundles.push_back({path, bundleURI(path), std::move(*manifest)});
        }
    };
    for (const auto& path : searchPath.bundles) {
        std::error_code error;
        add(fs::weakly_canonical(path, error).native());
    }
    for (const auto& folder : folders) {
        for (const auto& item : items(folder)) {
            add(item);
        }
    }
    return bundles;
}

}  // namespace orvalo
