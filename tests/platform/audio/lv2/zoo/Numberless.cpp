// Passes its input, but makes every 7th frame NaN and every 11th infinite.

#include <lv2/core/lv2.h>

#include <array>
#include <cstdint>
#include <limits>

namespace {

struct Numberless {
    std::array<float*, 2> ports{};
    std::uint32_t frame = 0;
};

LV2_Handle instantiate(const LV2_Descriptor* /*descriptor*/, double /*rate*/,
                       const char* /*bundle*/, const LV2_Feature* const* /*features*/) {
    return new Numberless;
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* location) {
    static_cast<Numberless*>(handle)->ports[port] = static_cast<float*>(location);
}

void run(LV2_Handle handle, std::uint32_t frames) {
    auto& self = *static_cast<Numberless*>(handle);
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    for (std::uint32_t frame = 0; frame < frames; ++frame) {
        ++self.frame;
        float sample = self.ports[0][frame];
        if (self.frame % 7 == 0) {
            sample = std::numeric_limits<float>::quiet_NaN();
        } else if (self.frame % 11 == 0) {
            sample = self.frame % 2 == 0 ? kInfinity : -kInfinity;
        }
        self.ports[1][frame] = sample;
    }
}

void cleanup(LV2_Handle handle) {
    delete static_cast<Numberless*>(handle);
}

const LV2_Descriptor kDescriptor{
    "urn:orvalo:zoo:numberless", instantiate, connectPort, nullptr, run, nullptr, cleanup, nullptr};

}  // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    return index == 0 ? &kDescriptor : nullptr;
}
