#include "tests/effect/EffectHost.h"

#include <gtest/gtest.h>
#include <lv2/atom/atom.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "tests/effect/EffectWorld.h"

namespace orvalo::testing {

namespace {

constexpr std::uint32_t midiInPort = 0;
constexpr std::uint32_t midiOutPort = 1;
constexpr std::uint32_t firstAudioPort = 2;
constexpr std::uint32_t firstSideChainPort = 52;

}  // namespace

EffectHost::EffectHost(const Setup& setup)
    : plugin_(setup.hasSideChain ? EffectWorld::shared().sideChainPlugin()
                                 : EffectWorld::shared().plugin()),
      midiIn_(uris_, 65536),
      midiOut_(uris_, setup.midiRoom) {
    const char* name = setup.contextName;
    const auto size = static_cast<std::uint32_t>(name == nullptr ? 0 : std::strlen(name) + 1);
    std::array<LV2_Options_Option, 2> options{};
    if (name != nullptr) {
        options[0] = {
            LV2_OPTIONS_INSTANCE,    0,   uris_["urn:tessaly:audio-component#contextName"], size,
            uris_[LV2_ATOM__String], name};
    }
    const LV2_Feature optionsFeature{LV2_OPTIONS__options, options.data()};
    const LV2_Feature mapFeature{LV2_URID__map, uris_.map()};
    const std::array<const LV2_Feature*, 3> features{&optionsFeature, &mapFeature, nullptr};
    instance_ =
        lilv_plugin_instantiate(plugin_, setup.rate, setup.midi ? features.data() : nullptr);
    if (instance_ != nullptr) {
        connectControls(setup.midi);
    }
}

EffectHost::~EffectHost() {
    if (instance_ != nullptr) {
        lilv_instance_free(instance_);
    }
}

void EffectHost::connectControls(bool midi) {
    const auto& world = EffectWorld::shared();
    const auto count = lilv_plugin_get_num_ports(plugin_);
    controls_.resize(count);
    lilv_plugin_get_port_ranges_float(plugin_, nullptr, nullptr, controls_.data());
    const Node controlPort = world.uri(LILV_URI_CONTROL_PORT);
    for (std::uint32_t i = 0; i < count; ++i) {
        const LilvPort* port = lilv_plugin_get_port_by_index(plugin_, i);
        symbols_.emplace_back(lilv_node_as_string(lilv_port_get_symbol(plugin_, port)));
        if (lilv_port_is_a(plugin_, port, controlPort.get())) {
            lilv_instance_connect_port(instance_, i, &controls_[i]);
        }
    }
    lilv_instance_connect_port(instance_, midiInPort, midi ? midiIn_.data() : nullptr);
    lilv_instance_connect_port(instance_, midiOutPort, midi ? midiOut_.data() : nullptr);
}

const LV2_Options_Interface* EffectHost::options() const {
    return static_cast<const LV2_Options_Interface*>(
        lilv_instance_get_extension_data(instance_, LV2_OPTIONS__interface));
}

float& EffectHost::control(const std::string& symbol) {
    const auto found = std::find(symbols_.begin(), symbols_.end(), symbol);
    EXPECT_NE(found, symbols_.end()) << symbol;
    return controls_.at(static_cast<std::size_t>(found - symbols_.begin()));
}

void EffectHost::connectSideChain(const float* left, const float* right) {
    lilv_instance_connect_port(instance_, firstSideChainPort, const_cast<float*>(left));
    lilv_instance_connect_port(instance_, firstSideChainPort + 1, const_cast<float*>(right));
}

void EffectHost::run(const float* inLeft, const float* inRight, float* outLeft, float* outRight,
                     std::uint32_t frames) {
    // connect_port() takes a non-const pointer for inputs, too.
    lilv_instance_connect_port(instance_, firstAudioPort, const_cast<float*>(inLeft));
    lilv_instance_connect_port(instance_, firstAudioPort + 1, const_cast<float*>(inRight));
    lilv_instance_connect_port(instance_, firstAudioPort + 2, outLeft);
    lilv_instance_connect_port(instance_, firstAudioPort + 3, outRight);
    midiOut_.offer();
    lilv_instance_run(instance_, frames);
}

Stereo EffectHost::render(const Stereo& input, const std::vector<std::uint32_t>& lengths,
                          const std::vector<MidiMessage>& messages, bool inPlace) {
    const std::size_t frames = input.left.size();
    Stereo output = inPlace ? input : steady(frames, -99.0F);
    const Stereo& from = inPlace ? output : input;
    auto message = messages.begin();
    std::size_t done = 0;
    for (std::size_t turn = 0; done < frames; ++turn) {
        const auto count = static_cast<std::uint32_t>(
            std::min<std::size_t>(frames - done, lengths[turn % lengths.size()]));
        midiIn_.clear();
        for (;
             message != messages.end() && message->frame < static_cast<std::int64_t>(done + count);
             ++message) {
            midiIn_.append(message->frame - static_cast<std::int64_t>(done), message->bytes.data(),
                           static_cast<std::uint32_t>(message->bytes.size()));
        }
        run(from.left.data() + done, from.right.data() + done, output.left.data() + done,
            output.right.data() + done, count);
        for (auto& one : midiOut_.messages(rendered_)) {
            EXPECT_LT(one.frame, rendered_ + count);
            sent_.push_back(std::move(one));
        }
        done += count;
        rendered_ += count;
    }
    return output;
}

}  // namespace orvalo::testing
