#include "effect/ui/PresetFile.h"

#include <lilv/lilv.h>
#include <lv2/presets/presets.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>

#include "effect/Uris.h"

namespace orvalo::effect::ui {

namespace {

struct Free {
    void operator()(LilvNode* node) const { lilv_node_free(node); }
    void operator()(LilvWorld* world) const { lilv_world_free(world); }
};

using World = std::unique_ptr<LilvWorld, Free>;
using Node = std::unique_ptr<LilvNode, Free>;

struct Vocabulary {
    explicit Vocabulary(LilvWorld* world)
        : label(lilv_new_uri(world, LILV_NS_RDFS "label")),
          port(lilv_new_uri(world, LV2_CORE__port)),
          symbol(lilv_new_uri(world, LV2_CORE__symbol)),
          value(lilv_new_uri(world, LV2_PRESETS__value)) {}

    Node label;
    Node port;
    Node symbol;
    Node value;
};

std::optional<Parameter> parameterOf(std::string_view symbol) {
    const auto* const found =
        std::find_if(parameterRanges.begin(), parameterRanges.end(),
                     [symbol](const ParameterRange& range) { return symbol == range.symbol; });
    if (found == parameterRanges.end()) {
        return std::nullopt;
    }
    return static_cast<Parameter>(found - parameterRanges.begin());
}

Preset readPreset(LilvWorld* world, const Vocabulary& words, const LilvNode* preset) {
    Preset result;
    const Node label(lilv_world_get(world, preset, words.label.get(), nullptr));
    if (label != nullptr) {
        result.name = lilv_node_as_string(label.get());
    }
    LilvNodes* ports = lilv_world_find_nodes(world, preset, words.port.get(), nullptr);
    LILV_FOREACH(nodes, i, ports) {
        const LilvNode* port = lilv_nodes_get(ports, i);
        const Node symbol(lilv_world_get(world, port, words.symbol.get(), nullptr));
        const Node value(lilv_world_get(world, port, words.value.get(), nullptr));
        const bool isNumber =
            value != nullptr && (lilv_node_is_float(value.get()) || lilv_node_is_int(value.get()));
        if (symbol == nullptr || !isNumber) {
            continue;
        }
        if (const auto parameter = parameterOf(lilv_node_as_string(symbol.get()))) {
            result.values.emplace_back(*parameter, lilv_node_as_float(value.get()));
        }
    }
    lilv_nodes_free(ports);
    std::sort(result.values.begin(), result.values.end());
    return result;
}

}  // namespace

std::vector<Preset> readPresets(const std::string& bundle) {
    const World world(lilv_world_new());
    if (world == nullptr) {
        return {};
    }
    // The URI of a bundle ends in a slash.
    const std::string folder = bundle.ends_with('/') ? bundle : bundle + '/';
    const Node address(lilv_new_file_uri(world.get(), nullptr, folder.c_str()));
    lilv_world_load_bundle(world.get(), address.get());
    const Node uri(lilv_new_uri(world.get(), pluginUri));
    const LilvPlugin* plugin =
        lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world.get()), uri.get());
    if (plugin == nullptr) {
        return {};
    }
    const Vocabulary words(world.get());
    const Node kind(lilv_new_uri(world.get(), LV2_PRESETS__Preset));
    LilvNodes* found = lilv_plugin_get_related(plugin, kind.get());
    std::vector<Preset> presets;
    LILV_FOREACH(nodes, i, found) {
        const LilvNode* preset = lilv_nodes_get(found, i);
        lilv_world_load_resource(world.get(), preset);
        Preset read = readPreset(world.get(), words, preset);
        if (!read.name.empty() && !read.values.empty()) {
            presets.push_back(std::move(read));
        }
    }
    lilv_nodes_free(found);
    std::sort(presets.begin(), presets.end(),
              [](const Preset& one, const Preset& other) { return one.name < other.name; });
    return presets;
}

}  // namespace orvalo::effect::ui
