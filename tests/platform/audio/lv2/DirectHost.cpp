#include "tests/platform/audio/lv2/DirectHost.h"

#include <lilv/lilv.h>
#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/core/lv2.h>
#include <lv2/options/options.h>
#include <lv2/parameters/parameters.h>
#include <lv2/urid/urid.h>
#include <lv2/worker/worker.h>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace orvalo::testing {

namespace {

/// URIs and their numbers.
struct Map {
    std::map<std::string, LV2_URID> numbers;
    std::vector<const char*> uris;

    LV2_URID number(const char* uri) {
        const auto [item, isNew] = numbers.emplace(uri, static_cast<LV2_URID>(numbers.size() + 1));
        if (isNew) {
            uris.push_back(item->first.c_str());
        }
        return item->second;
    }
};

/// A worker without a thread.
struct Worker {
    LilvInstance* instance = nullptr;
    const LV2_Worker_Interface* interface = nullptr;
    std::vector<std::string> answers;

    static LV2_Worker_Status schedule(LV2_Worker_Schedule_Handle handle, std::uint32_t size,
                                      const void* data) {
        auto& worker = *static_cast<Worker*>(handle);
        return worker.interface->work(lilv_instance_get_handle(worker.instance), respond, handle,
                                      size, data);
    }
    static LV2_Worker_Status respond(LV2_Worker_Respond_Handle handle, std::uint32_t size,
                                     const void* data) {
        static_cast<Worker*>(handle)->answers.emplace_back(static_cast<const char*>(data), size);
        return LV2_WORKER_SUCCESS;
    }
    void finish() {
        if (interface == nullptr) {
            return;
        }
        for (const auto& answer : answers) {
            interface->work_response(lilv_instance_get_handle(instance),
                                     static_cast<std::uint32_t>(answer.size()), answer.data());
        }
        answers.clear();
        if (interface->end_run != nullptr) {
            interface->end_run(lilv_instance_get_handle(instance));
        }
    }
};

/// The plug-in's ports and their memory.
class Ports {
  public:
    Ports(LilvWorld* world, const LilvPlugin* plugin, LilvInstance* instance, Map& map)
        : instance_(instance),
          sequence_(map.number(LV2_ATOM__Sequence)),
          chunk_(map.number(LV2_ATOM__Chunk)),
          values_(lilv_plugin_get_num_ports(plugin)),
          events_(values_.size(), std::vector<std::uint64_t>(8192)) {
        LilvNode* input = lilv_new_uri(world, LV2_CORE__InputPort);
        LilvNode* audio = lilv_new_uri(world, LV2_CORE__AudioPort);
        LilvNode* control = lilv_new_uri(world, LV2_CORE__ControlPort);
        std::vector<float> defaults(values_.size());
        lilv_plugin_get_port_ranges_float(plugin, nullptr, nullptr, defaults.data());
        for (std::uint32_t index = 0; index < values_.size(); ++index) {
            const auto* port = lilv_plugin_get_port_by_index(plugin, index);
            const bool isInput = lilv_port_is_a(plugin, port, input);
            if (lilv_port_is_a(plugin, port, audio)) {
                (isInput ? audioInputs_ : audioOutputs_).push_back(index);
            } else if (lilv_port_is_a(plugin, port, control)) {
                values_[index] = defaults[index] == defaults[index] ? defaults[index] : 0.0F;
                symbols_[lilv_node_as_string(lilv_port_get_symbol(plugin, port))] = index;
                lilv_instance_connect_port(instance, index, &values_[index]);
            } else {
                (isInput ? eventInputs_ : eventOutputs_).push_back(index);
                lilv_instance_connect_port(instance, index, events_[index].data());
            }
        }
        lilv_node_free(control);
        lilv_node_free(audio);
        lilv_node_free(input);
    }

    void set(const std::string& symbol, float value) { values_[symbols_.at(symbol)] = value; }

    void connect(Channels& from, Channels& to, std::size_t at) {
        for (std::size_t channel = 0; channel < audioInputs_.size(); ++channel) {
            lilv_instance_connect_port(instance_, audioInputs_[channel], from[channel].data() + at);
        }
        for (std::size_t channel = 0; channel < audioOutputs_.size(); ++channel) {
            lilv_instance_connect_port(instance_, audioOutputs_[channel], to[channel].data() + at);
        }
        for (const auto index : eventInputs_) {
            *reinterpret_cast<LV2_Atom_Sequence*>(events_[index].data()) = {
                {sizeof(LV2_Atom_Sequence_Body), sequence_}, {0, 0}};
        }
        for (const auto index : eventOutputs_) {
            const auto size = events_[index].size() * sizeof(std::uint64_t) - sizeof(LV2_Atom);
            *reinterpret_cast<LV2_Atom*>(events_[index].data()) = {static_cast<std::uint32_t>(size),
                                                                   chunk_};
        }
    }

    std::size_t outputCount() const { return audioOutputs_.size(); }

  private:
    LilvInstance* instance_;
    LV2_URID sequence_;
    LV2_URID chunk_;
    std::vector<float> values_;
    std::vector<std::vector<std::uint64_t>> events_;
    std::map<std::string, std::uint32_t> symbols_;
    std::vector<std::uint32_t> audioInputs_;
    std::vector<std::uint32_t> audioOutputs_;
    std::vector<std::uint32_t> eventInputs_;
    std::vector<std::uint32_t> eventOutputs_;
};

}  // namespace

Channels renderDirectly(const std::string& uri, double sampleRate,
                        const std::map<std::string, float>& controls, const Channels& input,
                        const std::vector<std::uint32_t>& blockLengths, std::size_t frameCount) {
    LilvWorld* world = lilv_world_new();
    lilv_world_load_all(world);
    LilvNode* node = lilv_new_uri(world, uri.c_str());
    const auto* plugin = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world), node);
    lilv_node_free(node);
    if (plugin == nullptr) {
        throw std::runtime_error(uri + " is not installed");
    }
    Map map;
    LV2_URID_Map mapping{&map, [](LV2_URID_Map_Handle handle, const char* text) {
                             return static_cast<Map*>(handle)->number(text);
                         }};
    LV2_URID_Unmap unmapping{&map, [](LV2_URID_Unmap_Handle handle, LV2_URID number) {
                                 return static_cast<Map*>(handle)->uris.at(number - 1);
                             }};
    Worker worker;
    LV2_Worker_Schedule schedule{&worker, Worker::schedule};
    const std::int32_t longest = 4096;
    const std::int32_t shortest = 1;
    const auto rate = static_cast<float>(sampleRate);
    const LV2_URID integer = map.number(LV2_ATOM__Int);
    const std::array<LV2_Options_Option, 4> options{
        {{LV2_OPTIONS_INSTANCE, 0, map.number(LV2_PARAMETERS__sampleRate), sizeof(rate),
          map.number(LV2_ATOM__Float), &rate},
         {LV2_OPTIONS_INSTANCE, 0, map.number(LV2_BUF_SIZE__minBlockLength), 4, integer, &shortest},
         {LV2_OPTIONS_INSTANCE, 0, map.number(LV2_BUF_SIZE__maxBlockLength), 4, integer, &longest},
         {}}};
    const LV2_Feature mapFeature{LV2_URID__map, &mapping};
    const LV2_Feature unmapFeature{LV2_URID__unmap, &unmapping};
    const LV2_Feature workerFeature{LV2_WORKER__schedule, &schedule};
    const LV2_Feature optionsFeature{LV2_OPTIONS__options,
                                     const_cast<LV2_Options_Option*>(options.data())};
    const LV2_Feature boundedFeature{LV2_BUF_SIZE__boundedBlockLength, nullptr};
    const std::array<const LV2_Feature*, 6> features{
        &mapFeature, &unmapFeature, &workerFeature, &optionsFeature, &boundedFeature, nullptr};
    LilvInstance* instance = lilv_plugin_instantiate(plugin, sampleRate, features.data());
    worker.instance = instance;
    worker.interface = static_cast<const LV2_Worker_Interface*>(
        lilv_instance_get_extension_data(instance, LV2_WORKER__interface));
    Ports ports(world, plugin, instance, map);
    for (const auto& [symbol, value] : controls) {
        ports.set(symbol, value);
    }
    Channels from = input;
    Channels to(ports.outputCount(), std::vector<float>(frameCount, -7.0F));
    lilv_instance_activate(instance);
    std::size_t block = 0;
    for (std::size_t at = 0; at < frameCount; ++block) {
        const auto length =
            std::min<std::size_t>(blockLengths[block % blockLengths.size()], frameCount - at);
        ports.connect(from, to, at);
        lilv_instance_run(instance, static_cast<std::uint32_t>(length));
        worker.finish();
        at += length;
    }
    lilv_instance_deactivate(instance);
    lilv_instance_free(instance);
    lilv_world_free(world);
    return to;
}

}  // namespace orvalo::testing
