// Multiplies by a factor of its state, which it takes up in run() only, as effects do that load
// files in their worker. Before it has run it saves the factor 1. Says when it is made.

#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/log/log.h>
#include <lv2/state/state.h>
#include <lv2/urid/urid.h>

#include <array>
#include <cstdint>
#include <string_view>

namespace {

enum Port { kIn, kOut, kGain, kPorts };

struct Deferred {
    std::array<float*, kPorts> ports{};
    LV2_URID key = 0;
    LV2_URID type = 0;
    float restored = 1.0F;
    float factor = 1.0F;
};

Deferred& effect(LV2_Handle handle) {
    return *static_cast<Deferred*>(handle);
}

LV2_Handle instantiate(const LV2_Descriptor* /*descriptor*/, double rate, const char* /*bundle*/,
                       const LV2_Feature* const* features) {
    LV2_URID_Map* map = nullptr;
    LV2_Log_Log* log = nullptr;
    for (; *features != nullptr; ++features) {
        const std::string_view uri((*features)->URI);
        if (uri == LV2_URID__map) {
            map = static_cast<LV2_URID_Map*>((*features)->data);
        } else if (uri == LV2_LOG__log) {
            log = static_cast<LV2_Log_Log*>((*features)->data);
        }
    }
    if (map == nullptr || log == nullptr) {
        return nullptr;
    }
    auto* self = new Deferred;
    self->key = map->map(map->handle, "urn:orvalo:zoo:deferred#factor");
    self->type = map->map(map->handle, LV2_ATOM__Float);
    log->printf(log->handle, map->map(map->handle, LV2_LOG__Note), "made at %.0f Hz", rate);
    return self;
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* location) {
    effect(handle).ports[port] = static_cast<float*>(location);
}

void run(LV2_Handle handle, std::uint32_t frames) {
    auto& self = effect(handle);
    self.factor = self.restored;
    for (std::uint32_t frame = 0; frame < frames; ++frame) {
        self.ports[kOut][frame] = self.ports[kIn][frame] * self.factor * *self.ports[kGain];
    }
}

void cleanup(LV2_Handle handle) {
    delete &effect(handle);
}

LV2_State_Status save(LV2_Handle handle, LV2_State_Store_Function store,
                      LV2_State_Handle storeHandle, std::uint32_t /*flags*/,
                      const LV2_Feature* const* /*features*/) {
    const auto& self = effect(handle);
    return store(storeHandle, self.key, &self.factor, sizeof(self.factor), self.type,
                 LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
}

LV2_State_Status restore(LV2_Handle handle, LV2_State_Retrieve_Function retrieve,
                         LV2_State_Handle retrieveHandle, std::uint32_t /*flags*/,
                         const LV2_Feature* const* /*features*/) {
    auto& self = effect(handle);
    std::size_t size = 0;
    std::uint32_t type = 0;
    std::uint32_t flags = 0;
    const void* value = retrieve(retrieveHandle, self.key, &size, &type, &flags);
    if (value != nullptr && type == self.type && size == sizeof(float)) {
        self.restored = *static_cast<const float*>(value);
    }
    return LV2_STATE_SUCCESS;
}

const void* extensionData(const char* uri) {
    static const LV2_State_Interface state{save, restore};
    return std::string_view(uri) == LV2_STATE__interface ? &state : nullptr;
}

constexpr LV2_Descriptor describe(const char* uri) {
    return {uri, instantiate, connectPort, nullptr, run, nullptr, cleanup, extensionData};
}

const std::array kEffects{describe("urn:orvalo:zoo:deferred"),
                          describe("urn:orvalo:zoo:deferred#stereo")};

}  // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    return index < kEffects.size() ? &kEffects[index] : nullptr;
}
