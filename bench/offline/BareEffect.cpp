#include "bench/offline/BareEffect.h"

#include <lilv/lilv.h>
#include <lv2/atom/atom.h>
#include <lv2/urid/urid.h>

#include <map>
#include <stdexcept>
#include <string>

#include "bench/measuring/Stage.h"

namespace orvalo::bench {

namespace {

constexpr std::size_t kSequenceBytes = 8192;

// Port numbers of the effect's data.
constexpr std::uint32_t kMidiIn = 0;
constexpr std::uint32_t kMidiOut = 1;
constexpr std::uint32_t kAudioIn = 2;
constexpr std::uint32_t kAudioOut = 4;
constexpr std::uint32_t kFirstControl = 6;

using Numbers = std::map<std::string, LV2_URID>;

LV2_URID numberOf(LV2_URID_Map_Handle handle, const char* uri) {
    auto& numbers = *static_cast<Numbers*>(handle);
    return numbers.try_emplace(uri, static_cast<LV2_URID>(numbers.size() + 1)).first->second;
}

/// An empty sequence with room for events.
struct Sequence {
    alignas(8) std::array<std::uint8_t, kSequenceBytes> bytes{};

    LV2_Atom_Sequence* atom() {
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): LV2's buffers are bytes.
        return reinterpret_cast<LV2_Atom_Sequence*>(bytes.data());
    }
    void reset(LV2_URID type, std::size_t size) {
        atom()->atom.type = type;
        atom()->atom.size = static_cast<std::uint32_t>(size);
    }
};

}  // namespace

struct BareEffect::Instance {
    Instance() = default;
    ~Instance() {
        if (instance != nullptr) {
            lilv_instance_deactivate(instance);
            lilv_instance_free(instance);
        }
        lilv_world_free(world);
    }
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    LilvWorld* world = lilv_world_new();
    LilvInstance* instance = nullptr;
    Numbers numbers;
    LV2_URID_Map map{&numbers, numberOf};
    LV2_Feature mapFeature{LV2_URID__map, &map};
    std::array<const LV2_Feature*, 2> features{&mapFeature, nullptr};
    std::vector<float> controls;
    Sequence midiIn;
    Sequence midiOut;
    LV2_URID sequenceType = 0;
    LV2_URID chunkType = 0;
};

BareEffect::BareEffect(double sampleRate) : instance_(std::make_unique<Instance>()) {
    auto& s = *instance_;
    const auto bundle = (stage() / "lib/lv2/orvalo.lv2/").string();
    auto* bundleNode = lilv_new_file_uri(s.world, nullptr, bundle.c_str());
    lilv_world_load_bundle(s.world, bundleNode);
    lilv_node_free(bundleNode);
    auto* uri = lilv_new_uri(s.world, "urn:tessaly:orvalo");
    const auto* plugin = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(s.world), uri);
    lilv_node_free(uri);
    if (plugin != nullptr) {
        s.instance = lilv_plugin_instantiate(plugin, sampleRate, s.features.data());
    }
    if (s.instance == nullptr) {
        throw std::runtime_error(bundle + " holds no effect that loads");
    }
    s.sequenceType = numberOf(&s.numbers, LV2_ATOM__Sequence);
    s.chunkType = numberOf(&s.numbers, LV2_ATOM__Chunk);

    s.controls.resize(lilv_plugin_get_num_ports(plugin));
    lilv_plugin_get_port_ranges_float(plugin, nullptr, nullptr, s.controls.data());
    for (std::uint32_t port = kFirstControl; port < s.controls.size(); ++port) {
        lilv_instance_connect_port(s.instance, port, &s.controls[port]);
    }
    for (std::uint32_t channel = 0; channel < inputs_.size(); ++channel) {
        inputs_.at(channel).resize(blockFrames);
        outputs_.at(channel).resize(blockFrames);
        lilv_instance_connect_port(s.instance, kAudioIn + channel, inputs_.at(channel).data());
        lilv_instance_connect_port(s.instance, kAudioOut + channel, outputs_.at(channel).data());
    }
    lilv_instance_connect_port(s.instance, kMidiIn, s.midiIn.bytes.data());
    lilv_instance_connect_port(s.instance, kMidiOut, s.midiOut.bytes.data());
    lilv_instance_activate(s.instance);
}

BareEffect::~BareEffect() = default;

void BareEffect::run() {
    auto& s = *instance_;
    s.midiIn.reset(s.sequenceType, sizeof(LV2_Atom_Sequence_Body));
    s.midiOut.reset(s.chunkType, kSequenceBytes - sizeof(LV2_Atom));
    lilv_instance_run(s.instance, blockFrames);
}

}  // namespace orvalo::bench
