#include "programs/play/RegistryTable.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "hosting/OrvaloComponent.h"
#include "platform/audio/component/AVAudioUnitComponentManager.h"
#include "platform/foundation/OneLine.h"
#include "support/FourCharCode.h"

namespace orvalo {

namespace {

using Row = std::array<std::string, 6>;

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
    std::string table;
    for (const auto& cells : rows) {
        if (!table.empty()) {
            table += '\n';
        }
        for (std::size_t column = 0; column + 1 < cells.size(); ++column) {
            std::size_t widest = 0;
            for (const auto& other : rows) {
                widest = std::max(widest, width(other[column]));
            }
            table += cells[column];
            table.append(widest + 2 - width(cells[column]), ' ');
        }
        table += cells.back();
    }
    return table;
}

}  // namespace orvalo
