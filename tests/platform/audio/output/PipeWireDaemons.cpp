#include "tests/platform/audio/output/PipeWireDaemons.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <utility>
#include <vector>

#include "platform/audio/output/PulseDevice.h"
#include "tests/testing/Program.h"
#include "tests/testing/SessionBus.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

PipeWireDaemons::PipeWireDaemons(std::filesystem::path folder) : folder_(std::move(folder)) {
    startSessionBus();
    for (const auto* variable : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME"}) {
        g_setenv(variable, folder_.c_str(), TRUE);
    }
    g_setenv("PULSE_SERVER", ("unix:" + (folder_ / "pulse/native").string()).c_str(), TRUE);
    writeFile("wireplumber/main.lua.d/51-no-devices.lua",  // WirePlumber 0.4
              "alsa_monitor.enabled = false\n"
              "libcamera_monitor.enabled = false\n"
              "v4l2_monitor.enabled = false\n");
    // The daemon has the store of the default sink. With a second one, WirePlumber writes into
    // the one that it sees first, and pipewire-pulse may read the other.
    writeFile("wireplumber/main.lua.d/99-no-metadata.lua", "components[\"metadata\"] = nil\n");
    writeFile("wireplumber/wireplumber.conf.d/no-devices.conf",  // WirePlumber 0.5
              "wireplumber.profiles = { main = { monitor.alsa = disabled "
              "monitor.libcamera = disabled monitor.v4l2 = disabled "
              "monitor.bluez = disabled } }\n");
}

void PipeWireDaemons::writeFile(const std::string& name, const std::string& text) const {
    std::filesystem::create_directories((folder_ / name).parent_path());
    std::ofstream(folder_ / name) << text;
}

void PipeWireDaemons::start(const Sink& sink) {
    const auto configuration = folder_ / "pipewire.conf";
    std::ofstream(configuration) << R"(
context.properties = {
    core.daemon = true
    core.name = pipewire-0
    support.dbus = false
    default.clock.rate = )" << sink.rate
                                 << R"(
    default.clock.quantum = 1024
    default.clock.min-quantum = 1024
    default.clock.max-quantum = 1024
}
context.spa-libs = {
    audio.convert.* = audioconvert/libspa-audioconvert
    support.* = support/libspa-support
}
context.modules = [
    { name = libpipewire-module-protocol-native }
    { name = libpipewire-module-metadata }
    { name = libpipewire-module-spa-node-factory }
    { name = libpipewire-module-client-node }
    { name = libpipewire-module-access }
    { name = libpipewire-module-adapter }
    { name = libpipewire-module-link-factory }
    { name = libpipewire-module-session-manager }
]
context.objects = [
    { factory = metadata args = { metadata.name = default } }
    { factory = spa-node-factory args = {
        factory.name = support.node.driver node.name = Dummy-Driver
        node.group = pipewire.dummy priority.driver = 20000 } }
    { factory = adapter args = {
        factory.name = support.null-audio-sink node.name = quiet
        audio.rate = )" << sink.rate
                                 << R"(
        audio.position = [ )" << sink.channels
                                 << R"( ] object.linger = true
        )" << sink.properties << R"( } }
]
)";
    daemon_.emplace(std::vector<std::string>{"pipewire", "-c", configuration.string()});
    EXPECT_TRUE(pollUntil([this] { return isListening(folder_ / "pipewire-0"); }));
    pulse_.emplace(std::vector<std::string>{"pipewire-pulse"});
    EXPECT_TRUE(pollUntil([this] { return isListening(folder_ / "pulse/native"); }));
}

void PipeWireDaemons::startSessionManager(bool (*isReady)()) {
    manager_.emplace(std::vector<std::string>{"wireplumber"});
    EXPECT_TRUE(pollUntil(isReady)) << defaultSink();
}

void PipeWireDaemons::end() {
    manager_.reset();
    pulse_.reset();
    daemon_.reset();
    removeSockets();
}

void PipeWireDaemons::kill() {
    for (auto* process : {&pulse_, &daemon_}) {
        (*process)->kill();
    }
    end();
}

void PipeWireDaemons::removeSockets() const {
    std::filesystem::remove(folder_ / "pulse/native");
    std::filesystem::remove(folder_ / "pipewire-0");
}

std::string PipeWireDaemons::defaultSink() {
    try {
        return PulseDevice().probe().deviceName;
    } catch (const NSError& error) {
        return error.what();
    }
}

bool PipeWireDaemons::isDefaultSink() {
    return hasPorts() && defaultSink() == "quiet";
}

bool PipeWireDaemons::hasPorts() {
    const auto ports = Program({"pw-link", "--input"}).readAll();
    return std::any_of(ports.begin(), ports.end(),
                       [](const auto& port) { return port.starts_with("quiet:"); });
}

}  // namespace orvalo::testing
