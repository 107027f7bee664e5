#include "tests/platform/audio/bridge/wire/Messages.h"

#include <limits>
#include <string>

namespace orvalo::testing {

std::vector<bridge::HostMessage> hostMessages() {
    return {
        bridge::Instantiate{
            .number = 1,
            .uri = "urn:test:effect",
            .bundles = {"/usr/lib/lv2/a.lv2", "", "/b"},
            .stateFolder = "/state",
            .contextName = "Wörk",
            .sampleRate = 44100.0,
            .state = std::string("a\0b", 3),
            .controls = {{3, 0.25F}, {4, -1.0F}},
            .inputChannelCount = 2,
            .outputChannelCount = 1,
            .portCount = 9,
            .preset = "urn:test:preset",
            .quantum = 4096,
            .writesPresets = true,
        },
        bridge::Prepare{.number = 2, .sampleRate = 96000.5},
        bridge::SetContextName{.number = 3, .name = "Name"},
        bridge::LoadPreset{.number = 4, .uri = "urn:test:preset"},
        bridge::Ping{.number = 5},
        bridge::OpenPluginUI{
            .number = 6, .display = ":7", .window = 0x1234567890ABCDEFU, .scaleFactor = 1.5},
        bridge::ResizePluginUI{.width = 640, .height = -480},
        bridge::ShowPluginUI{.isVisible = true},
        bridge::ClosePluginUI{.number = std::numeric_limits<std::uint32_t>::max()},
        bridge::LoadPluginUI{.number = 8},
        bridge::SetControl{.control = {7, -0.5F}},
        bridge::SaveState{.number = 9},
    };
}

std::vector<bridge::ServiceMessage> serviceMessages() {
    return {
        bridge::Done{.number = 7, .error = "It is not installed."},
        bridge::State{.text = std::string(70000, 's')},
        bridge::PluginUIOpened{.window = 0xFEDCBA0987654321U},
        bridge::PluginUIResizeRequest{.width = -1, .height = 300},
        bridge::PluginUIClosed{.reason = "it has closed itself"},
        bridge::PluginUIOutdated{},
        bridge::WritePreset{
            .folder = "a.lv2", .label = "Bässe", .comment = "", .values = {{7, 0.5F}, {8, -1.0F}}},
        bridge::RemovePreset{.folder = "a.lv2"},
    };
}

std::vector<std::byte> bodyOf(const std::vector<std::byte>& message) {
    return {message.begin() + sizeof(bridge::Head), message.end()};
}

}  // namespace orvalo::testing
