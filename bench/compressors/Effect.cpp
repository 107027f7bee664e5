#include "bench/compressors/Effect.h"

#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/options/options.h>
#include <lv2/urid/urid.h>
#include <lv2/worker/worker.h>

#include <array>
#include <deque>
#include <stdexcept>

#include "bench/measuring/Stage.h"

namespace orvalo::bench {

namespace {

struct FreeNode {
    void operator()(LilvNode* node) const { lilv_node_free(node); }
};
using Node = std::unique_ptr<LilvNode, FreeNode>;

/// Numbers for URIs, by the order of their first use.
struct Numbers {
    std::map<std::string, LV2_URID> numbers;
    std::deque<std::string> uris;

    static LV2_URID map(LV2_URID_Map_Handle handle, const char* uri) {
        auto& self = *static_cast<Numbers*>(handle);
        const auto next = static_cast<LV2_URID>(self.numbers.size() + 1);
        const auto [at, isNew] = self.numbers.try_emplace(uri, next);
        if (isNew) {
            self.uris.emplace_back(uri);
        }
        return at->second;
    }
    static const char* unmap(LV2_URID_Unmap_Handle handle, LV2_URID number) {
        auto& self = *static_cast<Numbers*>(handle);
        return number == 0 || number > self.uris.size() ? nullptr : self.uris[number - 1].c_str();
    }
};

}  // namespace

EffectWorld::EffectWorld() : world_(lilv_world_new()) {
    const Node path(lilv_new_string(world_.get(), lv2Path().c_str()));
    lilv_world_set_option(world_.get(), LILV_OPTION_LV2_PATH, path.get());
    lilv_world_load_all(world_.get());
}

const LilvPlugin* EffectWorld::find(const std::string& uri) const {
    const Node node(lilv_new_uri(world_.get(), uri.c_str()));
    return lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world_.get()), node.get());
}

struct Effect::State {
    static constexpr std::size_t sequenceBytes = 8192;
    using Sequence = std::array<std::uint64_t, sequenceBytes / sizeof(std::uint64_t)>;

    State() = default;
    ~State() {
        if (instance != nullptr) {
            lilv_instance_free(instance);
        }
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    Numbers numbers;
    std::vector<float> controls;
    std::deque<Sequence> inputSequences;
    std::deque<Sequence> outputSequences;
    std::vector<std::uint32_t> inputs;
    std::vector<std::uint32_t> outputs;
    std::array<float, blockFrames> silence{};
    LilvInstance* instance = nullptr;
    int latencyPort = -1;
    std::int32_t longestBlock = blockFrames;
    LV2_URID sequenceType = 0;
    LV2_URID chunkType = 0;

    static LV2_Atom_Sequence& sequence(Sequence& words) {
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): LV2's buffers are bytes.
        return *reinterpret_cast<LV2_Atom_Sequence*>(words.data());
    }

    void run() {
        for (auto& words : inputSequences) {
            sequence(words).atom = {sizeof(LV2_Atom_Sequence_Body), sequenceType};
            sequence(words).body = {0, 0};
        }
        for (auto& words : outputSequences) {
            sequence(words).atom = {sequenceBytes - sizeof(LV2_Atom), chunkType};
        }
        lilv_instance_run(instance, blockFrames);
    }
};

Effect::Effect(const EffectWorld& world, const LilvPlugin* plugin, const Settings& settings)
    : state_(std::make_unique<State>()) {
    State& state = *state_;
    LV2_URID_Map map{&state.numbers, Numbers::map};
    LV2_URID_Unmap unmap{&state.numbers, Numbers::unmap};
    const auto number = [&](const char* uri) { return Numbers::map(&state.numbers, uri); };
    state.sequenceType = number(LV2_ATOM__Sequence);
    state.chunkType = number(LV2_ATOM__Chunk);
    const std::array<LV2_Options_Option, 3> options{
        {{LV2_OPTIONS_INSTANCE, 0, number(LV2_BUF_SIZE__maxBlockLength), sizeof(std::int32_t),
          number(LV2_ATOM__Int), &state.longestBlock},
         {LV2_OPTIONS_INSTANCE, 0, number(LV2_BUF_SIZE__minBlockLength), sizeof(std::int32_t),
          number(LV2_ATOM__Int), &state.longestBlock},
         {}}};
    const LV2_Feature mapFeature{LV2_URID__map, &map};
    const LV2_Feature unmapFeature{LV2_URID__unmap, &unmap};
    const LV2_Feature optionsFeature{LV2_OPTIONS__options,
                                     const_cast<LV2_Options_Option*>(options.data())};
    const LV2_Feature boundedFeature{LV2_BUF_SIZE__boundedBlockLength, nullptr};
    const std::array<const LV2_Feature*, 5> features{&mapFeature, &unmapFeature, &optionsFeature,
                                                     &boundedFeature, nullptr};
    const std::string uri = lilv_node_as_uri(lilv_plugin_get_uri(plugin));
    state.instance = lilv_plugin_instantiate(plugin, rate, features.data());
    if (state.instance == nullptr) {
        throw std::runtime_error(uri + " cannot be instantiated");
    }
    const auto node = [&](const char* text) { return Node(lilv_new_uri(world.world(), text)); };
    const Node input = node(LV2_CORE__InputPort);
    const Node audio = node(LV2_CORE__AudioPort);
    const Node control = node(LV2_CORE__ControlPort);
    const std::uint32_t count = lilv_plugin_get_num_ports(plugin);
    state.controls.resize(count);
    lilv_plugin_get_port_ranges_float(plugin, nullptr, nullptr, state.controls.data());
    if (lilv_plugin_has_latency(plugin)) {
        state.latencyPort = static_cast<int>(lilv_plugin_get_latency_port_index(plugin));
    }
    std::size_t found = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        const LilvPort* port = lilv_plugin_get_port_by_index(plugin, i);
        const bool isInput = lilv_port_is_a(plugin, port, input.get());
        if (lilv_port_is_a(plugin, port, control.get())) {
            const auto set = settings.find(lilv_node_as_string(lilv_port_get_symbol(plugin, port)));
            if (set != settings.end()) {
                state.controls[i] = set->second;
                ++found;
            }
            lilv_instance_connect_port(state.instance, i, &state.controls[i]);
        } else if (lilv_port_is_a(plugin, port, audio.get())) {
            auto& ports = isInput ? state.inputs : state.outputs;
            ports.push_back(i);
            lilv_instance_connect_port(state.instance, i, state.silence.data());
        } else {
            auto& sequences = isInput ? state.inputSequences : state.outputSequences;
            lilv_instance_connect_port(state.instance, i, sequences.emplace_back().data());
        }
    }
    if (found != settings.size()) {
        throw std::runtime_error(uri + " lacks one of the benchmark's controls");
    }
    if (state.inputs.size() < 2 || state.outputs.size() < 2) {
        throw std::runtime_error(uri + " is not stereo");
    }
    lilv_instance_activate(state.instance);
}

Effect::~Effect() {
    lilv_instance_deactivate(state_->instance);
}

Stereo Effect::process(const Stereo& input) {
    const State& state = *state_;
    Stereo output{.left = std::vector<float>(input.left.size()),
                  .right = std::vector<float>(input.left.size())};
    for (std::size_t i = 0; i + blockFrames <= input.left.size(); i += blockFrames) {
        const auto connect = [&](std::uint32_t port, const float* samples) {
            lilv_instance_connect_port(state.instance, port, const_cast<float*>(samples));
        };
        connect(state.inputs[0], input.left.data() + i);
        connect(state.inputs[1], input.right.data() + i);
        connect(state.outputs[0], output.left.data() + i);
        connect(state.outputs[1], output.right.data() + i);
        state_->run();
    }
    return output;
}

std::uint32_t Effect::latency() const {
    const int port = state_->latencyPort;
    return port < 0 ? 0
                    : static_cast<std::uint32_t>(state_->controls[static_cast<std::size_t>(port)]);
}

}  // namespace orvalo::bench
