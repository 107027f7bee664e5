#include <glib.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>

#include "platform/audio/output/PulseDevice.h"
#include "tests/programs/play/PlayFixture.h"
#include "tests/programs/play/Recording.h"
#include "tests/testing/ServerProcess.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

using ::testing::ElementsAre;

/// orvalo-play with a transparent effect on private PipeWire daemons. Their only device is the
/// virtual sink "quiet". There is no other sound server and no ALSA device.
class PipeWireTest : public PlayFixture {
  protected:
    PipeWireTest() {
        for (const auto* variable : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME"}) {
            g_setenv(variable, folder.path().c_str(), TRUE);
        }
        writeFile("wireplumber/main.lua.d/51-no-devices.lua",  // WirePlumber 0.4
                  "alsa_monitor.enabled = false\n"
                  "libcamera_monitor.enabled = false\n"
                  "v4l2_monitor.enabled = false\n");
        writeFile("wireplumber/wireplumber.conf.d/no-devices.conf",  // WirePlumber 0.5
                  "wireplumber.profiles = { main = { monitor.alsa = disabled "
                  "monitor.libcamera = disabled monitor.v4l2 = disabled "
                  "monitor.bluez = disabled } }\n");
        g_setenv("PULSE_SERVER", ("unix:" + (folder.path() / "pulse/native").string()).c_str(),
                 TRUE);
        writeFile("asound.conf", "defaults.pcm.card 0\n");
        environment["ALSA_CONFIG_PATH"] = (folder.path() / "asound.conf").string();
        environment["JACK_DEFAULT_SERVER"] = "orvalo-test-nothing";
        environment["ORVALO_AUDIO_OUTPUT"] = "auto";
        environment["LV2_PATH"] = standIn("http://lv2plug.in/plugins/eg-amp");
        constexpr std::size_t frames = 20011;
        music = wav("music.wav", 48000, frames, 1);
        const auto pass = noise(1, frames, 1)[0];
        for (int count = 0; count < 3; ++count) {
            threePasses.insert(threePasses.end(), pass.begin(), pass.end());
        }
    }

    void writeFile(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories((folder.path() / name).parent_path());
        std::ofstream(folder.path() / name) << text;
    }

    /// properties: further ones of the sink, as PipeWire writes them.
    void startDaemons(const std::string& properties =
                          "media.class = Audio/Sink "
                          "node.description = Quiet") {
        const auto configuration = folder.path() / "pipewire.conf";
        std::ofstream(configuration) << R"(
context.properties = {
    core.daemon = true
    core.name = pipewire-0
    support.dbus = false
    default.clock.rate = 48000
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
        audio.position = [ FL FR ] object.linger = true
        adapter.auto-port-config = { mode = dsp monitor = true position = preserve }
        )" << properties << R"( } }
]
)";
        daemon.emplace(std::vector<std::string>{"pipewire", "-c", configuration.string()});
        EXPECT_TRUE(
            pollUntil([this] { return std::filesystem::is_socket(folder.path() / "pipewire-0"); }));
        pulse.emplace(std::vector<std::string>{"pipewire-pulse"});
        EXPECT_TRUE(pollUntil(
            [this] { return std::filesystem::is_socket(folder.path() / "pulse/native"); }));
    }

    /// Starts WirePlumber on a bus of its own, without its search for the machine's devices, and
    /// waits until it has chosen the sink.
    void startSessionManager() {
        manager.emplace(std::vector<std::string>{"dbus-run-session", "--", "wireplumber"});
        EXPECT_TRUE(pollUntil([] { return defaultSink() == "quiet"; }));
    }

    static std::string defaultSink() {
        try {
            return PulseDevice().probe().deviceName;
        } catch (const NSError& error) {
            return error.what();
        }
    }

    void endDaemons() {
        manager.reset();
        pulse.reset();
        daemon.reset();
        std::filesystem::remove(folder.path() / "pulse/native");
        std::filesystem::remove(folder.path() / "pipewire-0");
    }

    /// orvalo-play as pw-jack starts it.
    std::vector<std::string> onPipeWiresJack() const {
        auto result = command({"--file", music});
        result.insert(result.begin(), "pw-jack");
        return result;
    }

    void expectExactPasses() {
        PulseRecorder recorder("quiet.monitor");
        EXPECT_TRUE(pollUntil([&] { return recorder.recording.holds(threePasses); }));
    }

    /// The log lines about the output, from "Audio output" on.
    static std::vector<std::string> outputLines(const Program& playing) {
        std::vector<std::string> result;
        std::istringstream lines(playing.standardError());
        for (std::string line; std::getline(lines, line);) {
            if (const auto at = line.find("Audio output"); at != std::string::npos) {
                result.push_back(line.substr(at));
            }
        }
        return result;
    }
    static bool waitForOutputLines(const Program& playing, std::size_t count) {
        return pollUntil([&] { return outputLines(playing).size() >= count; });
    }

    static void end(Program& playing) {
        playing.signal(SIGINT);
        EXPECT_EQ(playing.readAll().back(), "AUEnginePlayer: Audio engine stopping.");
        EXPECT_EQ(playing.wait(), 0);
    }

    /// The daemons end and start again while the program plays.
    void expectItSurvivesARestart(const std::vector<std::string>& words, const char* first,
                                  const char* gone, const char* again) {
        startDaemons();
        startSessionManager();
        Program playing(words, environment);
        playing.readUntil("AUEnginePlayer: Audio engine starting.");
        ASSERT_TRUE(waitForOutputLines(playing, 1));
        endDaemons();
        ASSERT_TRUE(waitForOutputLines(playing, 2));
        startDaemons();
        startSessionManager();
        ASSERT_TRUE(waitForOutputLines(playing, 3));
        expectExactPasses();
        end(playing);
        EXPECT_THAT(outputLines(playing), ElementsAre(first, gone, again));
    }

    std::string music;
    std::vector<float> threePasses;
    std::optional<ServerProcess> daemon;
    std::optional<ServerProcess> pulse;
    std::optional<ServerProcess> manager;
};

TEST_F(PipeWireTest, PassesJoinSampleExactlyThroughItsPulseAudio) {
    startDaemons();
    startSessionManager();
    Program playing(command({"--file", music}), environment);
    playing.readUntil("AUEnginePlayer: Audio engine starting.");
    expectExactPasses();
    end(playing);
    EXPECT_THAT(outputLines(playing),
                ElementsAre("Audio output: PulseAudio, 48000 Hz, 2 channels, 512 frames."));
}

TEST_F(PipeWireTest, PassesJoinSampleExactlyThroughItsJack) {
    startDaemons();
    startSessionManager();
    Program playing(onPipeWiresJack(), environment);
    playing.readUntil("AUEnginePlayer: Audio engine starting.");
    expectExactPasses();
    end(playing);
    EXPECT_THAT(outputLines(playing),
                ElementsAre("Audio output: JACK, 48000 Hz, 2 channels, 1024 frames."));
}

TEST_F(PipeWireTest, PlaysOnAVirtualSinkWithoutPhysicalPorts) {
    startDaemons("media.class = Audio/Duplex node.description = Quiet");
    startSessionManager();  // Without it, PipeWire 1.4 makes no ports for JACK.
    environment["ORVALO_AUDIO_OUTPUT"] = "jack";
    Program playing(onPipeWiresJack(), environment);
    EXPECT_EQ(playing.readUntil("looped: 2.").back(),
              "AUEnginePlayer: Current audio file '" + music + "' looped: 2.");
    end(playing);
    EXPECT_THAT(outputLines(playing),
                ElementsAre("Audio output: JACK, 48000 Hz, 2 channels, 1024 frames."));
}

TEST_F(PipeWireTest, PlaysOnThroughPulseAudioAfterARestart) {
    expectItSurvivesARestart(
        command({"--file", music}), "Audio output: PulseAudio, 48000 Hz, 2 channels, 512 frames.",
        "Audio output: PulseAudio went away; a silent clock takes its place (48000 Hz, 2 channels, "
        "512 frames).",
        "Audio output: PulseAudio takes the place of the silent clock, 48000 Hz, 2 channels, 512 "
        "frames.");
}

TEST_F(PipeWireTest, PlaysOnThroughJackAfterARestart) {
    expectItSurvivesARestart(
        onPipeWiresJack(), "Audio output: JACK, 48000 Hz, 2 channels, 1024 frames.",
        "Audio output: JACK went away; a silent clock takes its place (48000 Hz, 2 channels, 1024 "
        "frames).",
        "Audio output: JACK takes the place of the silent clock, 48000 Hz, 2 channels, 1024 "
        "frames.");
}

TEST_F(PipeWireTest, PlaysSilentlyUntilASessionManagerStarts) {
    startDaemons();
    // As an earlier session manager leaves it. pipewire-pulse accepts streams and never plays them.
    EXPECT_TRUE(pollUntil([] {
        const ServerProcess choice(
            {"pw-metadata", "0", "default.audio.sink", R"({"name":"quiet"})"});
        return defaultSink() == "quiet";
    }));
    environment["G_MESSAGES_DEBUG"] = "Orvalo";
    Program playing(command({"--file", music}), environment);
    const std::string refusal = "Audio output PulseAudio: the sound server does not answer.";
    const auto refusals = [&] { return std::ranges::count(outputLines(playing), refusal); };
    EXPECT_EQ(playing.readUntil("looped: 2.").back(),
              "AUEnginePlayer: Current audio file '" + music + "' looped: 2.");
    ASSERT_TRUE(pollUntil([&] { return refusals() >= 2; }));
    startSessionManager();
    ASSERT_TRUE(pollUntil(
        [&] { return outputLines(playing).back().starts_with("Audio output: PulseAudio"); }));
    expectExactPasses();
    end(playing);
    auto lines = outputLines(playing);
    std::erase_if(lines, [](const auto& line) { return !line.starts_with("Audio output: "); });
    EXPECT_THAT(lines, ElementsAre("Audio output: none found; a silent clock takes its place "
                                   "(48000 Hz, 2 channels, 512 frames).",
                                   "Audio output: PulseAudio takes the place of the silent clock, "
                                   "48000 Hz, 2 channels, 512 frames."));
}

TEST_F(PipeWireTest, RefusesASinkThatRtAudioCannotRead) {
    startDaemons("media.class = Audio/Sink");
    EXPECT_TRUE(pollUntil([] {
        return defaultSink() == "the PulseAudio server's device \"quiet\" has no description";
    }));
}

}  // namespace

}  // namespace orvalo::testing
