#pragma once

#include <lilv/lilv.h>

#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/audio/lv2/LV2Bundle.h"
#include "platform/audio/unit/AVAudioUnitComponent.h"

namespace orvalo {

/// Frees objects of lilv. Only inside an LV2World::Access.
struct LilvDeleter {
    void operator()(LilvWorld* world) const { lilv_world_free(world); }
    void operator()(LilvNode* node) const { lilv_node_free(node); }
    void operator()(LilvNodes* nodes) const { lilv_nodes_free(nodes); }
    void operator()(LilvState* state) const { lilv_state_free(state); }
    void operator()(LilvInstance* instance) const { lilv_instance_free(instance); }
};

template <typename Type>
using LilvPointer = std::unique_ptr<Type, LilvDeleter>;

/// The LV2 plug-ins of a search path. Manifests are read once, at the first use; lilv loads the
/// bundles that describe a plug-in when the plug-in is first requested. Any thread; lilv itself is
/// not thread-safe, so Access serialises its use.
class LV2World {
  public:
    explicit LV2World(LV2SearchPath searchPath);
    ~LV2World() = default;
    LV2World(const LV2World&) = delete;
    LV2World& operator=(const LV2World&) = delete;

    /// The environment's plug-ins and the application's own. Lives as long as the process.
    static LV2World& shared();

    /// The component registry, in its order: plug-ins outside the application's own folder by URI,
    /// then those inside by URI. Codes of a plug-in that is not installed are left out with a
    /// warning.
    std::vector<std::shared_ptr<AVAudioUnitComponent>> components();

    /// Adds a single bundle to the search path. Where bundles hold the same plug-in, one that is
    /// added before the first use wins, a later one loses.
    void addBundle(const std::filesystem::path& bundle);
    /// Makes the component the only one of the registry.
    void setOnlyComponent(std::shared_ptr<AVAudioUnitComponent> component);
    /// The URIs of the plug-ins, sorted: of all bundles, or of the one at that path.
    std::vector<std::string> pluginURIs(const std::filesystem::path& bundle = {});

    /// Reads the manifests again at the next use, because bundles may have been installed. What
    /// lilv has loaded stays.
    void forgetManifests();

    /// The paths of the bundles that describe a plug-in: its own, and those with presets or codes
    /// for it. A world of these bundles alone has the same data of the plug-in as this world.
    std::vector<std::string> bundlesOf(const std::string& pluginURI);

    /// The path of the first bundle that states component codes of a plug-in; "" without one.
    std::string codesBundleOf(const std::string& pluginURI);

    /// Exclusive use of lilv, for the object's life. Does not nest. Every call of a lilv function
    /// needs an Access, except for running, connecting and activating an instance.
    class Access {
      public:
        explicit Access(LV2World& world) : lock_(world.mutex_), world_(world) {}

        LilvWorld* lilv() const { return world_.lilv_.get(); }
        LilvPointer<LilvNode> uri(const char* text) const;
        /// The plug-in with that URI, with all bundles loaded that describe it; null when there is
        /// none.
        const LilvPlugin* plugin(const std::string& uri) const;

      private:
        std::scoped_lock<std::mutex> lock_;
        LV2World& world_;
    };

  private:
    const std::vector<LV2Bundle>& bundles();
    const LV2Bundle* bundleOf(const std::string& pluginURI);
    void load(const LV2Bundle& bundle);
    void load(const std::string& pluginURI);
    const LilvPlugin* plugin(const std::string& uri);

    LV2SearchPath searchPath_;
    std::mutex mutex_;
    std::shared_ptr<AVAudioUnitComponent> onlyComponent_;
    LilvPointer<LilvWorld> lilv_;
    std::optional<std::vector<LV2Bundle>> bundles_;  // Empty before the first use.
    std::unordered_set<std::string> loadedPlugins_;
    std::unordered_set<std::string> loadedBundles_;
};

}  // namespace orvalo
