#include "platform/audio/lv2/LV2World.h"

#include <glib.h>

#include <algorithm>
#include <filesystem>

#include "platform/audio/lv2/LV2Manifest.h"
#include "platform/foundation/Bundle.h"

namespace orvalo {

LV2World::LV2World(LV2SearchPath searchPath)
    : searchPath_(std::move(searchPath)), lilv_(lilv_world_new()) {
    // A dynamic manifest would run a plug-in's code during the search.
    const LilvPointer<LilvNode> off(lilv_new_bool(lilv_.get(), false));
    lilv_world_set_option(lilv_.get(), LILV_OPTION_DYN_MANIFEST, off.get());
}

LV2World& LV2World::shared() {
    // Never destroyed: units in other static objects may outlive any order of destruction.
    static auto* world =
        new LV2World(LV2SearchPath::fromEnvironment(Bundle::main()->effectsURL().path()));
    return *world;
}

std::vector<LV2Component> LV2World::components() {
    const std::scoped_lock lock(mutex_);
    search();
    std::vector<const LV2Bundle*> stating;
    for (auto& entry : entries_) {
        if (mayStateComponents(entry.bundle) && isSound(entry)) {
            stating.push_back(&entry.bundle);
        }
    }
    std::vector<LV2Component> outside;
    std::vector<LV2Component> inside;
    for (auto& component : statedComponents(stating)) {
        const auto* known = plugin(component.uri);
        if (known == nullptr) {
            g_warning("A manifest states codes of <%s>, which is not installed.",
                      component.uri.c_str());
            continue;
        }
        (isOwn(known) ? inside : outside).push_back(std::move(component));
    }
    std::move(inside.begin(), inside.end(), std::back_inserter(outside));
    return outside;
}

std::vector<std::string> LV2World::bundlesOf(const std::string& pluginURI) {
    const std::scoped_lock lock(mutex_);
    const auto* known = plugin(pluginURI);
    const auto own = known == nullptr ? std::filesystem::path() : bundlePath(known);
    std::vector<std::string> mentioning;
    std::vector<std::string> all;
    bool isOwnMentioned = false;
    for (const auto& entry : entries_) {
        all.push_back(entry.bundle.path.native());
        if (mayMention(entry.bundle, pluginURI)) {
            mentioning.push_back(entry.bundle.path.native());
            isOwnMentioned = isOwnMentioned || entry.bundle.path == own;
        }
    }
    // A plug-in whose URI its own manifest cuts up was found by reading all of them.
    return known == nullptr || isOwnMentioned ? mentioning : all;
}

void LV2World::search() {
    if (isSearched_) {
        return;
    }
    isSearched_ = true;
    for (auto& bundle : findBundles(searchPath_)) {
        entries_.push_back({std::move(bundle), false, std::nullopt});
    }
}

bool LV2World::isSound(Entry& entry) {
    if (!entry.isSound) {
        entry.isSound = isReadable(entry.bundle);
    }
    return *entry.isSound;
}

void LV2World::load(Entry& entry) {
    if (entry.isHandedToLilv) {
        return;
    }
    entry.isHandedToLilv = true;
    // lilv would keep the first half of a broken manifest.
    if (isSound(entry)) {
        const LilvPointer<LilvNode> uri(lilv_new_uri(lilv_.get(), entry.bundle.uri.c_str()));
        lilv_world_load_bundle(lilv_.get(), uri.get());
    }
}

const LilvPlugin* LV2World::loadedPlugin(const std::string& uri) const {
    const LilvPointer<LilvNode> node(lilv_new_uri(lilv_.get(), uri.c_str()));
    return node == nullptr
               ? nullptr
               : lilv_plugins_get_by_uri(lilv_world_get_all_plugins(lilv_.get()), node.get());
}

const LilvPlugin* LV2World::plugin(const std::string& uri) {
    search();
    for (auto& entry : entries_) {
        if (mayMention(entry.bundle, uri)) {
            load(entry);
        }
    }
    const auto* found = loadedPlugin(uri);
    if (found == nullptr && !isAllLoaded_) {
        // The plug-in's own manifest may cut its URI into a prefix and a name anywhere.
        isAllLoaded_ = true;
        for (auto& entry : entries_) {
            load(entry);
        }
        found = loadedPlugin(uri);
    }
    return found;
}

std::filesystem::path LV2World::bundlePath(const LilvPlugin* plugin) {
    char* text = lilv_node_get_path(lilv_plugin_get_bundle_uri(plugin), nullptr);
    const std::filesystem::path path(text == nullptr ? "" : text);
    lilv_free(text);
    // Without the closing slash.
    return path.has_filename() ? path : path.parent_path();
}

bool LV2World::isOwn(const LilvPlugin* plugin) const {
    const auto bundle = bundlePath(plugin);
    std::error_code error;
    const auto own = std::filesystem::canonical(searchPath_.ownFolder, error);
    if (error) {
        return false;
    }
    const auto [end, rest] = std::mismatch(own.begin(), own.end(), bundle.begin(), bundle.end());
    return end == own.end();
}

LilvPointer<LilvNode> LV2World::Access::uri(const char* text) const {
    return LilvPointer<LilvNode>(lilv_new_uri(lilv(), text));
}

const LilvPlugin* LV2World::Access::plugin(const std::string& uri) const {
    return world_.plugin(uri);
}

}  // namespace orvalo
