#include "tests/effect/EffectWorld.h"

#include <cstdio>
#include <cstdlib>

namespace orvalo::testing {

EffectWorld& EffectWorld::shared() {
    static EffectWorld world;
    return world;
}

EffectWorld::EffectWorld() : world_(lilv_world_new()) {
    const Node path(lilv_new_string(world_.get(), EFFECT_LV2_PATH));
    lilv_world_set_option(world_.get(), LILV_OPTION_LV2_PATH, path.get());
    lilv_world_load_all(world_.get());
    plugin_ = find("urn:tessaly:orvalo");
    sideChainPlugin_ = find("urn:tessaly:orvalo:sidechain");
}

const LilvPlugin* EffectWorld::find(const std::string& uri) const {
    const Node node = this->uri(uri);
    const auto* plugin =
        lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world_.get()), node.get());
    if (plugin == nullptr) {
        static_cast<void>(std::fprintf(stderr, "%s is not on " EFFECT_LV2_PATH "\n", uri.c_str()));
        std::exit(1);
    }
    return plugin;
}

std::map<std::string, std::map<std::string, float>> EffectWorld::presets(
    const LilvPlugin* plugin) const {
    std::map<std::string, std::map<std::string, float>> presets;
    const Node preset = uri("http://lv2plug.in/ns/ext/presets#Preset");
    const Node label = uri(LILV_NS_RDFS "label");
    const Node port = uri(LILV_NS_LV2 "port");
    const Node symbol = uri(LILV_NS_LV2 "symbol");
    const Node value = uri("http://lv2plug.in/ns/ext/presets#value");
    LilvNodes* found = lilv_plugin_get_related(plugin, preset.get());
    LILV_FOREACH(nodes, i, found) {
        const LilvNode* one = lilv_nodes_get(found, i);
        lilv_world_load_resource(world_.get(), one);
        const Node name(lilv_world_get(world_.get(), one, label.get(), nullptr));
        auto& values = presets[lilv_node_as_string(name.get())];
        LilvNodes* ports = lilv_world_find_nodes(world_.get(), one, port.get(), nullptr);
        LILV_FOREACH(nodes, j, ports) {
            const LilvNode* at = lilv_nodes_get(ports, j);
            const Node key(lilv_world_get(world_.get(), at, symbol.get(), nullptr));
            const Node number(lilv_world_get(world_.get(), at, value.get(), nullptr));
            values[lilv_node_as_string(key.get())] = lilv_node_as_float(number.get());
        }
        lilv_nodes_free(ports);
    }
    lilv_nodes_free(found);
    return presets;
}

}  // namespace orvalo::testing
