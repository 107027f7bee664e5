#include "tests/effect/EffectState.h"

#include <gtest/gtest.h>
#include <lv2/atom/atom.h>

#include <array>

namespace orvalo::testing {

namespace {

struct Free {
    void operator()(LilvState* state) const { lilv_state_free(state); }
    void operator()(LilvWorld* world) const { lilv_world_free(world); }
    void operator()(LilvInstance* instance) const { lilv_instance_free(instance); }
};
using State = std::unique_ptr<LilvState, Free>;

/// The URIs of a process.
struct Uris {
    UridMap uris;
    LV2_URID_Unmap unmap{this, [](LV2_URID_Unmap_Handle self, LV2_URID number) {
                             return static_cast<Uris*>(self)->uris.uri(number);
                         }};
};

const void* read(const char* symbol, void* values, std::uint32_t* size, std::uint32_t* type) {
    auto& [uris, all] = *static_cast<std::pair<Uris*, const EffectState::Values*>*>(values);
    const auto found = all->find(symbol);
    if (found == all->end()) {
        return nullptr;
    }
    *size = sizeof(float);
    *type = uris->uris[LV2_ATOM__Float];
    return &found->second;
}

EffectState::Values valuesOf(const LilvState* state) {
    EffectState::Values values;
    lilv_state_emit_port_values(
        state,
        [](const char* symbol, void* all, const void* value, std::uint32_t size,
           std::uint32_t /*type*/) {
            EXPECT_EQ(size, sizeof(float)) << symbol;
            (*static_cast<EffectState::Values*>(all))[symbol] = *static_cast<const float*>(value);
        },
        &values);
    return values;
}

}  // namespace

void EffectState::save(const Values& values, const std::string& label,
                       const std::filesystem::path& folder, const std::string& file,
                       const LilvPlugin* plugin) {
    Uris uris;
    const auto& world = EffectWorld::shared();
    plugin = plugin == nullptr ? world.plugin() : plugin;
    const LV2_Feature map{LV2_URID__map, uris.uris.map()};
    const std::array<const LV2_Feature*, 2> features{&map, nullptr};
    const std::unique_ptr<LilvInstance, Free> instance(
        lilv_plugin_instantiate(plugin, 48000.0, features.data()));
    std::pair<Uris*, const Values*> given{&uris, &values};
    const State state(lilv_state_new_from_instance(plugin, instance.get(), uris.uris.map(), nullptr,
                                                   nullptr, nullptr, nullptr, read, &given, 0,
                                                   features.data()));
    lilv_state_set_label(state.get(), label.c_str());
    EXPECT_EQ(lilv_state_save(world.world(), uris.uris.map(), &uris.unmap, state.get(), nullptr,
                              folder.c_str(), file.c_str()),
              0);
}

EffectState::Values EffectState::load(const std::filesystem::path& file) {
    Uris uris;
    const State state(lilv_state_new_from_file(EffectWorld::shared().world(), uris.uris.map(),
                                               nullptr, file.c_str()));
    return state == nullptr ? Values() : valuesOf(state.get());
}

std::map<std::string, EffectState::Values> EffectState::presets(const std::string& path,
                                                                const char* name) {
    Uris uris;
    const std::unique_ptr<LilvWorld, Free> world(lilv_world_new());
    const Node searched(lilv_new_string(world.get(), path.c_str()));
    lilv_world_set_option(world.get(), LILV_OPTION_LV2_PATH, searched.get());
    lilv_world_load_all(world.get());
    const auto uri = [&](const char* text) { return Node(lilv_new_uri(world.get(), text)); };
    const LilvPlugin* plugin =
        lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world.get()), uri(name).get());
    LilvNodes* found =
        lilv_plugin_get_related(plugin, uri("http://lv2plug.in/ns/ext/presets#Preset").get());
    std::map<std::string, Values> presets;
    LILV_FOREACH(nodes, i, found) {
        const LilvNode* preset = lilv_nodes_get(found, i);
        lilv_world_load_resource(world.get(), preset);
        const State state(lilv_state_new_from_world(world.get(), uris.uris.map(), preset));
        presets[lilv_state_get_label(state.get())] = valuesOf(state.get());
    }
    lilv_nodes_free(found);
    return presets;
}

}  // namespace orvalo::testing
