#pragma once

#include <lilv/lilv.h>

#include <map>
#include <memory>
#include <string>

namespace orvalo::testing {

struct NodeFree {
    void operator()(LilvNode* node) const { lilv_node_free(node); }
};
using Node = std::unique_ptr<LilvNode, NodeFree>;

/// The built bundle and the machine's LV2 specifications, loaded once per program.
class EffectWorld {
  public:
    static EffectWorld& shared();
    EffectWorld(const EffectWorld&) = delete;
    EffectWorld& operator=(const EffectWorld&) = delete;

    LilvWorld* world() const { return world_.get(); }
    /// The effect; ends the test program if it is missing.
    const LilvPlugin* plugin() const { return plugin_; }
    /// The same effect with a side-chain input.
    const LilvPlugin* sideChainPlugin() const { return sideChainPlugin_; }
    Node uri(const std::string& uri) const { return Node(lilv_new_uri(world_.get(), uri.c_str())); }

    /// The presets by label: control values by symbol.
    std::map<std::string, std::map<std::string, float>> presets() const { return presets(plugin_); }
    std::map<std::string, std::map<std::string, float>> presets(const LilvPlugin* plugin) const;

  private:
    EffectWorld();
    const LilvPlugin* find(const std::string& uri) const;

    struct WorldFree {
        void operator()(LilvWorld* world) const { lilv_world_free(world); }
    };
    std::unique_ptr<LilvWorld, WorldFree> world_;
    const LilvPlugin* plugin_ = nullptr;
    const LilvPlugin* sideChainPlugin_ = nullptr;
};

}  // namespace orvalo::testing
