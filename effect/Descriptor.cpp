// The LV2 entry point of the two plug-ins, which differ in their ports only.

#include <lv2/core/lv2.h>

#include <array>
#include <cstring>
#include <new>
#include <string_view>

#include "effect/Plugin.h"

namespace {

using orvalo::effect::Plugin;

const void* featureData(const LV2_Feature* const* features, std::string_view uri) {
    for (const auto* feature = features; feature != nullptr && *feature != nullptr; ++feature) {
        if ((*feature)->URI == uri) {
            return (*feature)->data;
        }
    }
    return nullptr;
}

Plugin& plugin(LV2_Handle handle) {
    return *static_cast<Plugin*>(handle);
}

LV2_Handle instantiate(const LV2_Descriptor* /*descriptor*/, double sampleRate,
                       const char* /*bundle*/, const LV2_Feature* const* features) {
    if (!(sampleRate >= Plugin::lowestRate && sampleRate <= Plugin::highestRate)) {
        return nullptr;
    }
    const auto* map = static_cast<const LV2_URID_Map*>(featureData(features, LV2_URID__map));
    const auto* options =
        static_cast<const LV2_Options_Option*>(featureData(features, LV2_OPTIONS__options));
    try {
        return new Plugin(sampleRate, map, options);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* data) {
    plugin(handle).connect(port, data);
}

void activate(LV2_Handle handle) {
    plugin(handle).activate();
}

void run(LV2_Handle handle, std::uint32_t frames) {
    plugin(handle).run(frames);
}

void cleanup(LV2_Handle handle) {
    delete &plugin(handle);
}

std::uint32_t getOptions(LV2_Handle handle, LV2_Options_Option* options) {
    return plugin(handle).contextName().get(options);
}

std::uint32_t setOptions(LV2_Handle handle, const LV2_Options_Option* options) {
    try {
        return plugin(handle).contextName().set(options);
    } catch (const std::bad_alloc&) {
        return LV2_OPTIONS_ERR_UNKNOWN;
    }
}

const void* extensionData(const char* uri) {
    static const LV2_Options_Interface options{getOptions, setOptions};
    return std::strcmp(uri, LV2_OPTIONS__interface) == 0 ? &options : nullptr;
}

}  // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    static constexpr auto descriptor = [](const char* uri) {
        return LV2_Descriptor{uri, instantiate, connectPort, activate,
                              run, nullptr,     cleanup,     extensionData};
    };
    static const std::array<LV2_Descriptor, 2> descriptors{
        descriptor(orvalo::effect::pluginUri), descriptor(orvalo::effect::sideChainPluginUri)};
    return index < descriptors.size() ? &descriptors.at(index) : nullptr;
}
