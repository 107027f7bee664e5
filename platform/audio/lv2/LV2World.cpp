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

bool LV2World::isOwn(const LilvPlugin* plugin) const {
    char* text = lilv_node_get_path(lilv_plugin_get_bundle_uri(plugin), nullptr);
    const std::filesystem::path bundle(text == nullptr ? "" : text);
    lilv_free(text);
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
