#include <jack/jack.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <memory>

#include "tests/programs/play/PlayFixture.h"
#include "tests/programs/play/Recording.h"
#include "tests/testing/PrivateJack.h"
#include "tests/testing/ServerProcess.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

using ::testing::HasSubstr;

/// orvalo-play with a transparent effect on a real sound server.
class SoundServersTest : public PlayFixture {
  protected:
    SoundServersTest() {
        environment["LV2_PATH"] = standIn("http://lv2plug.in/plugins/eg-amp");
        // Few: a loaded machine has gaps, and the recording must hold three passes without one.
        constexpr std::size_t frames = 5003;
        music = wav("music.wav", 48000, frames, 1);
        const auto pass = noise(1, frames, 1)[0];
        for (int count = 0; count < 3; ++count) {
            threePasses.insert(threePasses.end(), pass.begin(), pass.end());
        }
    }

    static void end(Program& playing) {
        playing.signal(SIGINT);
        EXPECT_EQ(playing.readAll().back(), "AUEnginePlayer: Audio engine stopping.");
        EXPECT_EQ(playing.wait(), 0);
    }

    std::string music;
    std::vector<float> threePasses;
    Recording recording;
};

using JackClient = std::unique_ptr<jack_client_t, int (*)(jack_client_t*)>;

JackClient openClient() {
    return {jack_client_open("recorder", JackNoStartServer, nullptr), jack_client_close};
}

TEST_F(SoundServersTest, PassesJoinSampleExactlyOnJack) {
    const PrivateJack jack;
    environment["ORVALO_AUDIO_OUTPUT"] = "jack";
    // Synchronous: it waits for a late client, and otherwise leaves out what that plays.
    const auto server =
        jack.start({"--rate", "48000", "--period", "256"}, {"--sync", "--timeout", "5000"});
    JackClient client(nullptr, jack_client_close);
    ASSERT_TRUE(pollUntil([&] { return (client = openClient()) != nullptr; }));
    struct Recorder {
        jack_port_t* port;
        Recording* recording;
    } recorder{
        jack_port_register(client.get(), "left", JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0),
        &recording};
    jack_set_process_callback(
        client.get(),
        [](jack_nframes_t frames, void* argument) {
            const auto& self = *static_cast<Recorder*>(argument);
            self.recording->append(
                static_cast<const float*>(jack_port_get_buffer(self.port, frames)), frames, 1);
            return 0;
        },
        &recorder);
    jack_activate(client.get());

    Program playing(command({"--file", music}), environment);
    playing.readUntil("AUEnginePlayer: Audio engine starting.");
    ASSERT_TRUE(pollUntil([&] {
        const int result = jack_connect(client.get(), "Orvalo:outport 0", "recorder:left");
        return result == 0 || result == EEXIST;
    })) << playing.standardError();
    EXPECT_TRUE(pollUntil([&] { return recording.holds(threePasses); }));
    end(playing);
    EXPECT_THAT(playing.standardError(),
                HasSubstr("Audio output: JACK, 48000 Hz, 2 channels, 256 frames."));
}

TEST_F(SoundServersTest, PassesJoinSampleExactlyOnPulseAudio) {
    const auto socket = (folder.path() / "socket").string();
    setenv("HOME", folder.path().c_str(), 1);
    setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
    setenv("PULSE_SERVER", ("unix:" + socket).c_str(), 1);
    environment["ORVALO_AUDIO_OUTPUT"] = "pulse";
    const ServerProcess server(
        {"pulseaudio", "--daemonize=no", "-n", "--exit-idle-time=-1", "--use-pid-file=no",
         "--disable-shm=yes", "-L", "module-null-sink sink_name=quiet format=float32le rate=48000",
         "-L", "module-native-protocol-unix auth-anonymous=1 socket=" + socket});
    PulseRecorder recorder("quiet.monitor");

    Program playing(command({"--file", music}), environment);
    playing.readUntil("AUEnginePlayer: Audio engine starting.");
    EXPECT_TRUE(pollUntil([&] { return recorder.recording.holds(threePasses); }))
        << playing.standardError();
    end(playing);
    EXPECT_THAT(playing.standardError(),
                HasSubstr("Audio output: PulseAudio, 48000 Hz, 2 channels"));
}

}  // namespace

}  // namespace orvalo::testing
