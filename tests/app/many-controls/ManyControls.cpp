// A plug-in with a control of each kind and many more, for UIs that are made from ports. Its meter
// shows the first control, its output is its input.

#include <lv2/core/lv2.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

constexpr std::size_t kPortCount = 260;
constexpr std::uint32_t kMeter = 4;
constexpr std::uint32_t kLevel = 5;

struct Effect {
    std::array<void*, kPortCount> ports{};

    float* port(std::uint32_t index) const { return static_cast<float*>(ports.at(index)); }
};

LV2_Handle instantiate(const LV2_Descriptor* /*descriptor*/, double /*rate*/,
                       const char* /*bundle*/, const LV2_Feature* const* /*features*/) {
    return new Effect;
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* data) {
    static_cast<Effect*>(handle)->ports.at(port) = data;
}

void run(LV2_Handle handle, std::uint32_t frames) {
    const auto& effect = *static_cast<Effect*>(handle);
    for (const std::uint32_t channel : {0U, 1U}) {
        std::copy_n(effect.port(channel), frames, effect.port(channel + 2));
    }
    *effect.port(kMeter) = *effect.port(kLevel);
}

void cleanup(LV2_Handle handle) {
    delete static_cast<Effect*>(handle);
}

constexpr LV2_Descriptor descriptor(const char* uri) {
    return {uri, instantiate, connectPort, nullptr, run, nullptr, cleanup, nullptr};
}

constexpr std::array kDescriptors{descriptor("urn:orvalo:test:few"),
                                  descriptor("urn:orvalo:test:many")};

}  // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    return index < kDescriptors.size() ? &kDescriptors.at(index) : nullptr;
}
