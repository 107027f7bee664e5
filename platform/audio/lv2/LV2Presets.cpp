#include "platform/audio/lv2/LV2Presets.h"

#include <glib.h>
#include <lv2/presets/presets.h>

#include <algorithm>
#include <tuple>

#include "platform/audio/lv2/LV2Features.h"

namespace orvalo {

namespace {

/// Whether lilv may read the files that manifests name for the resource; otherwise a warning says
/// which it may not.
bool hasSoundFiles(const LV2World::Access& access, const LilvNode* resource) {
    const auto predicate = access.uri(LILV_NS_RDFS "seeAlso");
    const LilvPointer<LilvNodes> files(
        lilv_world_find_nodes(access.lilv(), resource, predicate.get(), nullptr));
    LILV_FOREACH(nodes, i, files.get()) {
        const auto* file = lilv_nodes_get(files.get(), i);
        const auto error = lilv_node_is_uri(file) ? turtleFileError(lilv_node_as_uri(file))
                                                  : std::string("it is named by no URI");
        if (!error.empty()) {
            g_warning("The state of <%s> is left out: its file %s is not sound (%s).",
                      lilv_node_as_uri(resource), lilv_node_as_string(file), error.c_str());
            return false;
        }
    }
    return true;
}

LilvPointer<LilvNode> label(const LV2World::Access& access, const LilvNode* preset) {
    const auto predicate = access.uri(LILV_NS_RDFS "label");
    const auto get = [&] {
        return LilvPointer<LilvNode>(
            lilv_world_get(access.lilv(), preset, predicate.get(), nullptr));
    };
    auto node = get();
    if (node == nullptr) {
        // Most bundles keep the label with the preset rather than in the manifest.
        lilv_world_load_resource(access.lilv(), preset);
        node = get();
    }
    return node;
}

}  // namespace

std::vector<LV2Preset> findPresets(LV2World& world, const std::string& pluginURI) {
    const LV2World::Access access(world);
    const auto* plugin = access.plugin(pluginURI);
    if (plugin == nullptr) {
        return {};
    }
    const auto type = access.uri(LV2_PRESETS__Preset);
    const LilvPointer<LilvNodes> nodes(lilv_plugin_get_related(plugin, type.get()));
    std::vector<LV2Preset> presets;
    LILV_FOREACH(nodes, i, nodes.get()) {
        const auto* node = lilv_nodes_get(nodes.get(), i);
        if (!lilv_node_is_uri(node) || !hasSoundFiles(access, node)) {
            continue;
        }
        const std::string uri = lilv_node_as_uri(node);
        const auto text = label(access, node);
        const bool isNamed = text != nullptr && lilv_node_as_string(text.get()) != nullptr;
        presets.push_back({uri, isNamed ? lilv_node_as_string(text.get()) : uri});
    }
    std::sort(presets.begin(), presets.end(), [](const LV2Preset& left, const LV2Preset& right) {
        return std::tie(left.label, left.uri) < std::tie(right.label, right.uri);
    });
    return presets;
}

LV2State readState(LV2World& world, const std::string& uri) {
    LilvState* state = nullptr;
    {
        const LV2World::Access access(world);
        const auto node = access.uri(uri.c_str());
        if (!hasSoundFiles(access, node.get())) {
            return nullptr;
        }
        lilv_world_load_resource(access.lilv(), node.get());
        state = lilv_state_new_from_world(access.lilv(), &LV2Features::map(), node.get());
    }
    if (state == nullptr) {
        g_warning("The state <%s> cannot be read.", uri.c_str());
        return nullptr;
    }
    return keep(world, state);
}

}  // namespace orvalo
