// An effect that logs its context name at its instantiation. Its state is the number of its run()
// calls.

#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/log/log.h>
#include <lv2/options/options.h>
#include <lv2/state/state.h>
#include <lv2/urid/urid.h>

#include <array>
#include <atomic>
#include <cstring>
#include <string_view>

namespace {

struct Prober {
    LV2_URID_Map* map = nullptr;
    LV2_Log_Log* log = nullptr;
    std::array<float*, 2> ports{};
    std::atomic<std::int32_t> runs{0};

    LV2_URID number(const char* uri) const { return map->map(map->handle, uri); }
};

Prober& prober(LV2_Handle handle) {
    return *static_cast<Prober*>(handle);
}

LV2_Handle instantiate(const LV2_Descriptor* /*descriptor*/, double /*rate*/,
                       const char* /*bundle*/, const LV2_Feature* const* features) {
    auto* self = new Prober;
    const LV2_Options_Option* options = nullptr;
    for (; *features != nullptr; ++features) {
        const std::string_view uri((*features)->URI);
        if (uri == LV2_URID__map) {
            self->map = static_cast<LV2_URID_Map*>((*features)->data);
        } else if (uri == LV2_LOG__log) {
            self->log = static_cast<LV2_Log_Log*>((*features)->data);
        } else if (uri == LV2_OPTIONS__options) {
            options = static_cast<const LV2_Options_Option*>((*features)->data);
        }
    }
    for (; options != nullptr && options->key != 0; ++options) {
        if (options->key == self->number("urn:tessaly:audio-component#contextName") &&
            options->size > 1) {
            self->log->printf(self->log->handle, self->number(LV2_LOG__Note), "context: %s\n",
                              static_cast<const char*>(options->value));
        }
    }
    return self;
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* location) {
    prober(handle).ports[port] = static_cast<float*>(location);
}

void run(LV2_Handle handle, std::uint32_t frames) {
    auto& self = prober(handle);
    ++self.runs;
    std::memcpy(self.ports[1], self.ports[0], frames * sizeof(float));
}

void cleanup(LV2_Handle handle) {
    delete &prober(handle);
}

LV2_State_Status save(LV2_Handle handle, LV2_State_Store_Function store, LV2_State_Handle place,
                      std::uint32_t /*flags*/, const LV2_Feature* const* /*features*/) {
    auto& self = prober(handle);
    const std::int32_t runs = self.runs;
    return store(place, self.number("urn:orvalo:service:prober#runs"), &runs, sizeof(runs),
                 self.number(LV2_ATOM__Int), LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
}

LV2_State_Status restore(LV2_Handle handle, LV2_State_Retrieve_Function retrieve,
                         LV2_State_Handle place, std::uint32_t /*flags*/,
                         const LV2_Feature* const* /*features*/) {
    auto& self = prober(handle);
    std::size_t size = 0;
    std::uint32_t type = 0;
    std::uint32_t flags = 0;
    const void* value =
        retrieve(place, self.number("urn:orvalo:service:prober#runs"), &size, &type, &flags);
    std::int32_t runs = 0;
    if (value != nullptr && size == sizeof(runs) && type == self.number(LV2_ATOM__Int)) {
        std::memcpy(&runs, value, sizeof(runs));
        self.runs = runs;
    }
    return LV2_STATE_SUCCESS;
}

const void* extensionData(const char* uri) {
    static const LV2_State_Interface state{save, restore};
    return std::string_view(uri) == LV2_STATE__interface ? &state : nullptr;
}

}  // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    static const LV2_Descriptor descriptor{"urn:orvalo:service:prober",
                                           instantiate,
                                           connectPort,
                                           nullptr,
                                           run,
                                           nullptr,
                                           cleanup,
                                           extensionData};
    return index == 0 ? &descriptor : nullptr;
}
