// Delays. "told-late" always by 64 frames, which it reports from its third run on; "changing" by
// no frames, from frame 81,920 on by 1000, and from frame 163,840 on by 100, as it reports.

#include <lv2/core/lv2.h>

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace {

enum Port { kIn, kOut, kLatency, kPorts };

struct LateLatency {
    bool isToldLate = false;
    std::array<float*, kPorts> ports{};
    std::uint32_t runs = 0;
    std::vector<float> history;
};

std::uint32_t delayAt(const LateLatency& effect, std::size_t frame) {
    if (effect.isToldLate) {
        return 64;
    }
    if (frame < 81920) {
        return 0;
    }
    return frame < 163840 ? 1000 : 100;
}

LV2_Handle instantiate(const LV2_Descriptor* descriptor, double /*rate*/, const char* /*bundle*/,
                       const LV2_Feature* const* /*features*/) {
    auto* self = new LateLatency;
    self->isToldLate = std::string_view(descriptor->URI).ends_with("told-late");
    return self;
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* location) {
    static_cast<LateLatency*>(handle)->ports[port] = static_cast<float*>(location);
}

void run(LV2_Handle handle, std::uint32_t frames) {
    auto& self = *static_cast<LateLatency*>(handle);
    ++self.runs;
    std::uint32_t delay = 0;
    for (std::uint32_t frame = 0; frame < frames; ++frame) {
        delay = delayAt(self, self.history.size());
        self.history.push_back(self.ports[kIn][frame]);
        const auto last = self.history.size() - 1;
        self.ports[kOut][frame] = delay <= last ? self.history[last - delay] : 0.0F;
    }
    const bool isTold = !self.isToldLate || self.runs >= 3;
    *self.ports[kLatency] = isTold ? static_cast<float>(delay) : 0.0F;
}

void cleanup(LV2_Handle handle) {
    delete static_cast<LateLatency*>(handle);
}

constexpr LV2_Descriptor describe(const char* uri) {
    return {uri, instantiate, connectPort, nullptr, run, nullptr, cleanup, nullptr};
}

const std::array kEffects{describe("urn:orvalo:zoo:told-late"),
                          describe("urn:orvalo:zoo:changing")};

}  // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    return index < kEffects.size() ? &kEffects[index] : nullptr;
}
