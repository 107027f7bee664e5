#include "programs/play/RegistryTable.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "hosting/OrvaloComponent.h"
#include "platform/audio/component/AVAudioUnitComponentManager.h"
#include "platform/audio/lv2/LV2PluginData.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/OneLine.h"
#include "support/FourCharCode.h"

namespace orvalo {

namespace {

using Row = std::vector<std::string>;

Row row(const AVAudioUnitComponent& component, const std::string& mark) {
    const auto& codes = component.audioComponentDescription;
    std::array<char, sizeof "0x00000000"> flags{};
    std::snprintf(flags.data(), flags.size(), "0x%08x", codes.componentFlags);
    return {mark + stringValue(codes.componentType),
            stringValue(codes.componentSubType),
            stringValue(codes.componentManufacturer),
            flags.data(),
            onOneLine(component.name),
            onOneLine(component.uri)};
}

/// In characters: names are UTF-8.
std::size_t width(const std::string& text) {
    return static_cast<std::size_t>(g_utf8_strlen(text.c_str(), -1));
}

/// The rows as lines, with aligned columns.
std::string table(const std::vector<Row>& rows) {
    std::string text;
    for (const auto& cells : rows) {
        if (!text.empty()) {
            text += '\n';
        }
        for (std::size_t column = 0; column + 1 < cells.size(); ++column) {
            std::size_t widest = 0;
            for (const auto& other : rows) {
                widest = std::max(widest, width(other[column]));
            }
            text += cells[column];
            text.append(widest + 2 - width(cells[column]), ' ');
        }
        text += cells.back();
    }
    return text;
}

Row installedRow(const LV2World::Access& access, const std::string& uri) {
    std::string inputs = "-";
    std::string outputs = "-";
    try {
        const auto data = LV2PluginData::read(access, uri);
        inputs = std::to_string(data.inputChannelCount);
        outputs = std::to_string(data.outputChannelCount);
    } catch (const NSError& error) {
        g_debug("%s", error.what());
    }
    const LilvPointer<LilvNode> name(lilv_plugin_get_name(access.plugin(uri)));
    return {inputs, outputs, name == nullptr ? "" : onOneLine(lilv_node_as_string(name.get())),
            onOneLine(uri)};
}

}  // namespace

std::string registryTable() {
    const auto& manager = AVAudioUnitComponentManager::sharedAudioUnitComponentManager();
    const auto components = manager->components({});
    if (components.empty()) {
        return "No effect on the LV2 path states component codes.";
    }
    const auto playable = manager->components(orvaloComponentDescription);
    std::vector<Row> rows{{"  type", "subtype", "manufacturer", "flags", "name", "plug-in"}};
    for (const auto& component : components) {
        const bool isPlayed = !playable.empty() && component == playable.front();
        rows.push_back(row(*component, isPlayed ? "* " : "  "));
    }
    return table(rows);
}

std::string installedTable() {
    // Without an own folder, so that it does not log each effect as loaded.
    auto path = LV2SearchPath::fromEnvironment({});
    path.folders.emplace_back(Bundle::main()->effectsURL().path());
    LV2World world(path);
    const auto uris = world.pluginURIs();
    if (uris.empty()) {
        return "No effect is on the LV2 path.";
    }
    std::vector<Row> rows{{"in", "out", "name", "plug-in"}};
    const LV2World::Access access(world);
    for (const auto& uri : uris) {
        rows.push_back(installedRow(access, uri));
    }
    return table(rows);
}

}  // namespace orvalo
