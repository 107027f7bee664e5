#include <algorithm>
#include <csignal>
#include <fstream>
#include <sstream>

#include "tests/platform/audio/output/PipeWireDaemons.h"
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
        std::ofstream(folder.path() / "asound.conf") << "defaults.pcm.card 0\n";
        environment["ALSA_CONFIG_PATH"] = (folder.path() / "asound.conf").string();
        environment["JACK_DEFAULT_SERVER"] = "orvalo-test-nothing";
        environment["ORVALO_AUDIO_OUTPUT"] = "auto";
        environment["LV2_PATH"] = standIn("http://lv2plug.in/plugins/eg-amp");
        // Few: a loaded machine has gaps, and the recording must hold three passes without one.
        constexpr std::size_t frames = 5003;
        music = wav("music.wav", 48000, frames, 1);
        const auto pass = noise(1, frames, 1)[0];
        for (int count = 0; count < 3; ++count) {
            threePasses.insert(threePasses.end(), pass.begin(), pass.end());
        }
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
        daemons.start({});
        daemons.startSessionManager();
        Program playing(words, environment);
        playing.readUntil("AUEnginePlayer: Audio engine starting.");
        ASSERT_TRUE(waitForOutputLines(playing, 1));
        daemons.end();
        ASSERT_TRUE(waitForOutputLines(playing, 2));
        daemons.start({});
        daemons.startSessionManager();
        ASSERT_TRUE(waitForOutputLines(playing, 3));
        expectExactPasses();
        end(playing);
        EXPECT_THAT(outputLines(playing), ElementsAre(first, gone, again));
    }

    std::string music;
    std::vector<float> threePasses;
    PipeWireDaemons daemons{folder.path()};
};

TEST_F(PipeWireTest, PassesJoinSampleExactlyThroughItsPulseAudio) {
    daemons.start({});
    daemons.startSessionManager();
    Program playing(command({"--file", music}), environment);
    playing.readUntil("AUEnginePlayer: Audio engine starting.");
    expectExactPasses();
    end(playing);
    EXPECT_THAT(outputLines(playing),
                ElementsAre("Audio output: PulseAudio, 48000 Hz, 2 channels, 512 frames."));
}

TEST_F(PipeWireTest, PassesJoinSampleExactlyThroughItsJack) {
    daemons.start({});
    daemons.startSessionManager();
    Program playing(onPipeWiresJack(), environment);
    playing.readUntil("AUEnginePlayer: Audio engine starting.");
    expectExactPasses();
    end(playing);
    EXPECT_THAT(outputLines(playing),
                ElementsAre("Audio output: JACK, 48000 Hz, 2 channels, 1024 frames."));
}

TEST_F(PipeWireTest, PlaysOnAVirtualSinkWithoutPhysicalPorts) {
    daemons.start({.properties = "media.class = Audio/Duplex node.description = Quiet"});
    // Without it, PipeWire makes no ports. WirePlumber adds a sink, because a duplex device is
    // none for it, and either may become the default.
    daemons.startSessionManager(PipeWireDaemons::hasPorts);
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
    daemons.start({});
    // As an earlier session manager leaves it. pipewire-pulse accepts streams and never plays them.
    EXPECT_TRUE(pollUntil([] {
        const ServerProcess choice(
            {"pw-metadata", "0", "default.audio.sink", R"({"name":"quiet"})"});
        return PipeWireDaemons::defaultSink() == "quiet";
    }));
    environment["G_MESSAGES_DEBUG"] = "Orvalo";
    Program playing(command({"--file", music}), environment);
    const std::string refusal = "Audio output PulseAudio: the sound server does not answer.";
    const auto refusals = [&] { return std::ranges::count(outputLines(playing), refusal); };
    EXPECT_EQ(playing.readUntil("looped: 2.").back(),
              "AUEnginePlayer: Current audio file '" + music + "' looped: 2.");
    ASSERT_TRUE(pollUntil([&] { return refusals() >= 2; }));
    daemons.startSessionManager();
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
    daemons.start({.properties = "media.class = Audio/Sink"});
    EXPECT_TRUE(pollUntil([] {
        return PipeWireDaemons::defaultSink() ==
               "the PulseAudio server's device \"quiet\" has no description";
    }));
}

}  // namespace

}  // namespace orvalo::testing
