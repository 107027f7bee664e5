#include "platform/audio/lv2/LV2PluginData.h"

#include <lv2/buf-size/buf-size.h>
#include <lv2/core/lv2.h>
#include <lv2/options/options.h>
#include <lv2/state/state.h>
#include <lv2/ui/ui.h>

#include <algorithm>
#include <memory>

#include "platform/audio/lv2/LV2DataChecks.h"
#include "platform/audio/lv2/LV2Error.h"
#include "platform/audio/lv2/LV2Features.h"
#include "platform/audio/lv2/LV2Options.h"
#include "platform/audio/signal/AudioBlock.h"

namespace orvalo {

namespace {

bool hasFeature(const LV2World::Access& access, const LilvPlugin* plugin, const char* feature) {
    return lilv_plugin_has_feature(plugin, access.uri(feature).get());
}

std::uint32_t countAudio(const std::vector<LV2Port>& ports, bool isInput, const std::string& uri) {
    const auto count = std::count_if(ports.begin(), ports.end(), [isInput](const LV2Port& port) {
        return port.kind == LV2PortKind::audio && port.isInput == isInput;
    });
    if (count > kMaximumChannels) {
        throw lv2Error(LV2ErrorCode::unsupportedPort, uri,
                       "it has " + std::to_string(count) + " audio " +
                           (isInput ? "inputs" : "outputs") + ", more than " +
                           std::to_string(kMaximumChannels));
    }
    return static_cast<std::uint32_t>(count);
}

bool hasUI(const LV2World::Access& access, const LilvPlugin* plugin, const char* kind) {
    const std::unique_ptr<LilvUIs, void (*)(LilvUIs*)> uis(lilv_plugin_get_uis(plugin),
                                                           lilv_uis_free);
    const auto wanted = access.uri(kind);
    LILV_FOREACH(uis, i, uis.get()) {
        if (lilv_ui_is_a(lilv_uis_get(uis.get(), i), wanted.get())) {
            return true;
        }
    }
    return false;
}

}  // namespace

LV2PluginData LV2PluginData::read(const LV2World::Access& access, const std::string& uri) {
    const auto* plugin = access.plugin(uri);
    if (plugin == nullptr) {
        throw lv2Error(LV2ErrorCode::unknownPlugin, uri, "it is not installed");
    }
    LV2PluginData data;
    data.uri = uri;
    requireSoundFiles(lilv_plugin_get_data_uris(plugin), uri, lv2Error);
    data.binary = pathOf(lilv_plugin_get_library_uri(plugin));
    if (data.binary.empty()) {
        throw lv2Error(LV2ErrorCode::noLibrary, uri, "its data name no library");
    }
    const LilvPointer<LilvNodes> features(lilv_plugin_get_required_features(plugin));
    requireOffered(features.get(), "feature", LV2Features::isOffered, uri, lv2Error);
    const LilvPointer<LilvNodes> options(
        lilv_plugin_get_value(plugin, access.uri(LV2_OPTIONS__requiredOption).get()));
    requireOffered(options.get(), "option", LV2Options::isOffered, uri, lv2Error);
    data.ports = readPorts(access, plugin, uri);
    data.inputChannelCount = countAudio(data.ports, true, uri);
    data.outputChannelCount = countAudio(data.ports, false, uri);
    for (const auto& port : data.ports) {
        data.sequenceSize = std::max(data.sequenceSize, port.bufferSize);
        if (port.kind == LV2PortKind::sequence && !port.isInput && port.carriesMIDI) {
            data.midiOutputNames.push_back(port.name);
        }
    }
    data.hasThreadSafeRestore = hasFeature(access, plugin, LV2_STATE__threadSafeRestore);
    const auto state = access.uri(LV2_STATE__state);
    data.hasDefaultState =
        hasFeature(access, plugin, LV2_STATE__loadDefaultState) ||
        lilv_world_ask(access.lilv(), lilv_plugin_get_uri(plugin), state.get(), nullptr);
    data.hasX11UI = hasUI(access, plugin, LV2_UI__X11UI);
    return data;
}

}  // namespace orvalo
