// Sends back every event at the same frame, and counts the events.

#include <lv2/atom/util.h>
#include <lv2/core/lv2.h>

#include <array>
#include <cstdint>
#include <cstring>

namespace {

enum Port { kIn, kOut, kEvents, kNotify, kGain, kCount, kPorts };

struct Echo {
    std::array<void*, kPorts> ports{};
    float count = 0.0F;
};

LV2_Handle instantiate(const LV2_Descriptor* /*descriptor*/, double /*rate*/,
                       const char* /*bundle*/, const LV2_Feature* const* /*features*/) {
    return new Echo;
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* location) {
    static_cast<Echo*>(handle)->ports[port] = location;
}

void run(LV2_Handle handle, std::uint32_t frames) {
    auto& self = *static_cast<Echo*>(handle);
    const auto* in = static_cast<const float*>(self.ports[kIn]);
    auto* out = static_cast<float*>(self.ports[kOut]);
    const float gain = *static_cast<float*>(self.ports[kGain]);
    for (std::uint32_t frame = 0; frame < frames; ++frame) {
        out[frame] = gain * in[frame];
    }
    const auto* events = static_cast<const LV2_Atom_Sequence*>(self.ports[kEvents]);
    LV2_ATOM_SEQUENCE_FOREACH(events, event) {
        self.count += 1.0F;
    }
    // Both buffers have the same size.
    std::memcpy(self.ports[kNotify], events, sizeof(events->atom) + events->atom.size);
    *static_cast<float*>(self.ports[kCount]) = self.count;
}

void cleanup(LV2_Handle handle) {
    delete static_cast<Echo*>(handle);
}

constexpr LV2_Descriptor describe(const char* uri) {
    return {uri, instantiate, connectPort, nullptr, run, nullptr, cleanup, nullptr};
}

// One effect under several URIs with different UIs.
const std::array kEchoes{
    describe("urn:orvalo:zoo:echo"),    describe("urn:orvalo:zoo:huge-buffer"),
    describe("urn:orvalo:ui:probe"),    describe("urn:orvalo:ui:fixed"),
    describe("urn:orvalo:ui:direct"),   describe("urn:orvalo:ui:demanding"),
    describe("urn:orvalo:ui:optional"), describe("urn:orvalo:ui:toolkit"),
    describe("urn:orvalo:ui:missing"),  describe("urn:orvalo:ui:foreign"),
    describe("urn:orvalo:ui:refusing"), describe("urn:orvalo:ui:windowless"),
    describe("urn:orvalo:ui:none"),
};

}  // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    return index < kEchoes.size() ? &kEchoes[index] : nullptr;
}
