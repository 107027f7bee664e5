#include "platform/audio/lv2/LV2Bundle.h"

#include <glib.h>
#include <lilv/lilv.h>
#include <lv2/core/lv2.h>
#include <serd/serd.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <unordered_map>

#include "platform/audio/lv2/TurtleFile.h"
#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

namespace fs = std::filesystem;

// The folders of the Filesystem Hierarchy Standard that lilv searches on Debian.
constexpr const char* kDefaultPath =
    "~/.lv2:/usr/lib/" ORVALO_LIBRARY_ARCHITECTURE "/lv2:/usr/lib/lv2:/usr/local/lib/lv2";

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

std::string folderURI(const std::string& path) {
    const std::string folder = path + "/";
    SerdNode node = serd_node_new_file_uri(reinterpret_cast<const std::uint8_t*>(folder.c_str()),
                                           nullptr, nullptr, true);
    std::string uri(reinterpret_cast<const char*>(node.buf), node.n_bytes);
    serd_node_free(&node);
    return uri;
}

/// The folder's entries by name, with links resolved.
std::vector<std::string> entries(const fs::path& folder) {
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
        g_warning("%s cannot be searched for effects: %s.", folder.c_str(),
                  error.message().c_str());
    }
    std::sort(result.begin(), result.end());
    return result;
}

std::optional<LV2Bundle> readBundle(const std::string& path) {
    const auto manifest = path + "/manifest.ttl";
    std::error_code ignored;
    if (fs::status(manifest, ignored).type() == fs::file_type::not_found) {
        return std::nullopt;
    }
    LV2Bundle bundle{path, folderURI(path), {}, {}, {}};
    const auto read = [&bundle](const TurtleStatement& statement) {
        const auto& [subject, predicate, object, isLiteral] = statement;
        if (bundle.resources.empty() || bundle.resources.back() != subject) {
            bundle.resources.push_back(subject);
        }
        if (predicate == LILV_NS_RDF "type" && object == LV2_CORE__Plugin && !subject.empty()) {
            bundle.plugins.insert(subject);
        } else if (predicate == LV2_CORE__appliesTo) {
            bundle.resources.push_back(object);
        } else if (predicate.starts_with(kComponentVocabulary)) {
            bundle.codes.push_back(
                {subject, predicate.substr(std::strlen(kComponentVocabulary)), object, isLiteral});
        }
    };
    if (const auto error = readTurtle(manifest, bundle.uri + "manifest.ttl", read);
        !error.empty()) {
        g_warning("The manifest of %s is left out: %s.", path.c_str(), error.c_str());
        return std::nullopt;
    }
    return bundle;
}

void forget(LV2Bundle& bundle, const std::string& plugin) {
    bundle.plugins.erase(plugin);
    std::erase(bundle.resources, plugin);
    std::erase_if(bundle.codes, [&plugin](const LV2ComponentStatement& statement) {
        return statement.plugin == plugin;
    });
}

}  // namespace

LV2SearchPath LV2SearchPath::fromEnvironment(std::filesystem::path ownFolder) {
    LV2SearchPath result;
    const char* path = g_getenv("LV2_PATH");
    const std::unique_ptr<char*, Release<g_strfreev>> folders(
        g_strsplit(path == nullptr ? kDefaultPath : path, ":", -1));
    for (char** folder = folders.get(); *folder != nullptr; ++folder) {
        if (**folder != '\0') {
            result.folders.emplace_back(expanded(*folder));
        }
    }
    result.ownFolder = std::move(ownFolder);
    return result;
}

std::vector<LV2Bundle> findBundles(const LV2SearchPath& searchPath) {
    std::vector<LV2Bundle> bundles;
    std::unordered_set<std::string> seen;
    std::unordered_map<std::string, std::string> holders;
    const auto add = [&](const std::string& path) {
        if (!seen.insert(path).second) {
            return;
        }
        auto bundle = readBundle(path);
        if (!bundle) {
            return;
        }
        for (const auto& plugin : std::unordered_set(bundle->plugins)) {
            const auto [holder, isFirst] = holders.emplace(plugin, path);
            if (!isFirst) {
                g_warning("%s holds <%s>, which is taken from %s instead.", path.c_str(),
                          plugin.c_str(), holder->second.c_str());
                forget(*bundle, plugin);
            }
        }
        bundles.push_back(std::move(*bundle));
    };
    for (const auto& path : searchPath.bundles) {
        std::error_code error;
        add(fs::weakly_canonical(path, error).native());
    }
    std::vector<fs::path> folders = searchPath.folders;
    folders.push_back(searchPath.ownFolder);
    for (const auto& folder : folders) {
        for (const auto& path : entries(folder)) {
            add(path);
        }
    }
    return bundles;
}

}  // namespace orvalo
