#include "platform/audio/lv2/LV2World.h"

#include <glib.h>

#include <algorithm>

#include "platform/audio/lv2/LV2Component.h"
#include "platform/foundation/Bundle.h"

namespace orvalo {

namespace {

bool describes(const LV2Bundle& bundle, const std::string& uri) {
    return std::find(bundle.resources.begin(), bundle.resources.end(), uri) !=
           bundle.resources.end();
}

}  // namespace

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

std::vector<std::shared_ptr<AVAudioUnitComponent>> LV2World::components() {
    const std::scoped_lock lock(mutex_);
    if (onlyComponent_) {
        return {onlyComponent_};
    }
    std::error_code error;
    const auto ownFolder = std::filesystem::canonical(searchPath_.ownFolder, error);
    std::vector<std::shared_ptr<AVAudioUnitComponent>> outside;
    std::vector<std::shared_ptr<AVAudioUnitComponent>> inside;
    for (auto& component : statedComponents(bundles())) {
        const auto* bundle = bundleOf(component->uri);
        if (bundle == nullptr) {
            g_warning("A manifest states codes of <%s>, which is not installed.",
                      component->uri.c_str());
            continue;
        }
        const bool isOwn = !error && bundle->path.parent_path() == ownFolder;
        (isOwn ? inside : outside).push_back(std::move(component));
    }
    std::move(inside.begin(), inside.end(), std::back_inserter(outside));
    return outside;
}

void LV2World::addBundle(const std::filesystem::path& bundle) {
    const std::scoped_lock lock(mutex_);
    if (!bundles_) {
        searchPath_.bundles.push_back(bundle);
        return;
    }
    for (auto& read : findBundles({{}, {}, {bundle}})) {
        load(read);
        bundles_->push_back(std::move(read));
    }
}

void LV2World::setOnlyComponent(std::shared_ptr<AVAudioUnitComponent> component) {
    const std::scoped_lock lock(mutex_);
    onlyComponent_ = std::move(component);
}

std::vector<std::string> LV2World::pluginURIs(const std::filesystem::path& bundle) {
    const std::scoped_lock lock(mutex_);
    std::error_code ignored;
    const auto path = std::filesystem::weakly_canonical(bundle, ignored);
    std::vector<std::string> result;
    for (const auto& each : bundles()) {
        if (bundle.empty() || each.path == path) {
            result.insert(result.end(), each.plugins.begin(), each.plugins.end());
        }
    }
    std::sort(result.begin(), result.end());
    return result;
}

void LV2World::forgetManifests() {
    const std::scoped_lock lock(mutex_);
    bundles_.reset();
    loadedPlugins_.clear();
}

std::vector<std::string> LV2World::bundlesOf(const std::string& pluginURI) {
    const std::scoped_lock lock(mutex_);
    std::vector<std::string> result;
    for (const auto& bundle : bundles()) {
        if (describes(bundle, pluginURI)) {
            result.push_back(bundle.path.native());
        }
    }
    return result;
}

std::string LV2World::codesBundleOf(const std::string& pluginURI) {
    const std::scoped_lock lock(mutex_);
    for (const auto& bundle : bundles()) {
        for (const auto& statement : bundle.codes) {
            if (statement.plugin == pluginURI) {
                return bundle.path.native();
            }
        }
    }
    return {};
}

const std::vector<LV2Bundle>& LV2World::bundles() {
    if (!bundles_) {
        bundles_ = findBundles(searchPath_);
    }
    return *bundles_;
}

const LV2Bundle* LV2World::bundleOf(const std::string& pluginURI) {
    const auto& all = bundles();
    const auto found = std::find_if(all.begin(), all.end(), [&pluginURI](const LV2Bundle& bundle) {
        return bundle.plugins.contains(pluginURI);
    });
    return found == all.end() ? nullptr : &*found;
}

void LV2World::load(const LV2Bundle& bundle) {
    if (loadedBundles_.insert(bundle.uri).second) {
        const LilvPointer<LilvNode> uri(lilv_new_uri(lilv_.get(), bundle.uri.c_str()));
        lilv_world_load_bundle(lilv_.get(), uri.get());
    }
}

void LV2World::load(const std::string& pluginURI) {
    if (!loadedPlugins_.insert(pluginURI).second) {
        return;
    }
    for (const auto& bundle : bundles()) {
        if (describes(bundle, pluginURI)) {
            load(bundle);
        }
    }
    const auto* own = bundleOf(pluginURI);
    // Without an own folder: the effect service, whose host has named the bundle already, or a
    // list.
    if (own != nullptr && !searchPath_.ownFolder.empty()) {
        g_message("The effect <%s> is loaded from %s.", pluginURI.c_str(), own->path.c_str());
    }
}

const LilvPlugin* LV2World::plugin(const std::string& uri) {
    load(uri);
    const LilvPointer<LilvNode> node(lilv_new_uri(lilv_.get(), uri.c_str()));
    return node == nullptr
               ? nullptr
               : lilv_plugins_get_by_uri(lilv_world_get_all_plugins(lilv_.get()), node.get());
}

LilvPointer<LilvNode> LV2World::Access::uri(const char* text) const {
    return LilvPointer<LilvNode>(lilv_new_uri(lilv(), text));
}

const LilvPlugin* LV2World::Access::plugin(const std::string& uri) const {
    return world_.plugin(uri);
}

}  // namespace orvalo
