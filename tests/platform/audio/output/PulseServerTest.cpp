#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pulse/simple.h>
#include <sched.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/audio/output/AlsaDevice.h"
#include "platform/audio/output/PulseDevice.h"
#include "platform/audio/output/SupervisedOutput.h"
#include "tests/platform/audio/output/LogLines.h"
#include "tests/platform/audio/output/PipeWireDaemons.h"
#include "tests/platform/audio/output/RecordingSource.h"
#include "tests/platform/audio/output/SignalCapture.h"
#include "tests/testing/ServerProcess.h"
#include "tests/testing/TemporaryFolder.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::LogLines;
using testing::RecordingSource;
using testing::ServerProcess;
using testing::SignalCapture;
using testing::TemporaryFolder;

/// Records what a sink plays.
class SinkRecorder {
  public:
    explicit SinkRecorder(const char* source) {
        const pa_sample_spec spec{PA_SAMPLE_FLOAT32LE, 48000, 2};
        connection_ = pa_simple_new(nullptr, "recorder", PA_STREAM_RECORD, source, "record", &spec,
                                    nullptr, nullptr, nullptr);
        thread_ = std::thread([this] { run(); });
    }
    ~SinkRecorder() {
        stopping_ = true;
        thread_.join();
        if (connection_ != nullptr) {
            pa_simple_free(connection_);
        }
    }
    SinkRecorder(const SinkRecorder&) = delete;
    SinkRecorder& operator=(const SinkRecorder&) = delete;

    const SignalCapture& capture() const { return capture_; }

  private:
    void run() {
        std::array<float, 2048> frames{};
        while (!stopping_ && connection_ != nullptr &&
               pa_simple_read(connection_, frames.data(), sizeof frames, nullptr) >= 0) {
            capture_.append(frames.data(), frames.data() + 1, frames.size() / 2, 2);
        }
    }

    pa_simple* connection_ = nullptr;
    SignalCapture capture_;
    std::atomic<bool> stopping_{false};
    std::thread thread_;
};

/// A sound server of PulseAudio's protocol, whose only device is the sink "quiet".
class SoundServer {
  public:
    SoundServer() = default;
    virtual ~SoundServer() = default;
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;

    /// Starts it and waits for the sink.
    virtual void start(const std::string& rate, int channels) = 0;
    /// Ends it as a crash would.
    virtual void kill() = 0;
};

bool isSinkThere() {
    try {
        PulseDevice().probe();
        return true;
    } catch (const NSError&) {
        return false;
    }
}

class PulseAudio : public SoundServer {
  public:
    explicit PulseAudio(const std::filesystem::path& folder)
        : socket_((folder / "native-socket").string()) {
        setenv("PULSE_SERVER", ("unix:" + socket_).c_str(), 1);
    }

    void start(const std::string& rate, int channels) override {
        std::filesystem::remove(socket_);
        process_.emplace(std::vector<std::string>{
            "pulseaudio", "--daemonize=no", "-n", "--exit-idle-time=-1", "--use-pid-file=no",
            "--disable-shm=yes", "-L",
            "module-null-sink sink_name=quiet format=float32le rate=" + rate +
                " channels=" + std::to_string(channels),
            "-L", "module-native-protocol-unix auth-anonymous=1 socket=" + socket_});
        EXPECT_TRUE(testing::pollUntil(isSinkThere));
    }
    void kill() override { process_->kill(); }

  private:
    const std::string socket_;
    std::optional<ServerProcess> process_;
};

class PipeWire : public SoundServer {
  public:
    explicit PipeWire(const std::filesystem::path& folder) : daemons_(folder) {}

    void start(const std::string& rate, int channels) override {
        daemons_.start({.rate = rate, .channels = channels == 1 ? "MONO" : "FL FR"});
        daemons_.startSessionManager();
    }
    void kill() override { daemons_.kill(); }

  private:
    testing::PipeWireDaemons daemons_;
};

/// Built once for each server: ORVALO_TESTED_SERVER is its class.
class PulseServerTest : public ::testing::Test {
  protected:
    PulseServerTest() {
        setenv("HOME", folder_.path().c_str(), 1);
        setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), 1);
        server_ = std::make_unique<ORVALO_TESTED_SERVER>(folder_.path());
    }

    static std::unique_ptr<SupervisedOutput> makeOutput() {
        std::vector<std::unique_ptr<OutputDevice>> devices;
        devices.push_back(std::make_unique<PulseDevice>());
        return std::make_unique<SupervisedOutput>(
            std::move(devices), SupervisedOutput::Absence::standIn,
            SupervisedOutput::Timing{milliseconds(20000), milliseconds(50), milliseconds(50)});
    }

    const TemporaryFolder folder_;
    std::unique_ptr<SoundServer> server_;
    RecordingSource source_;
    LogLines log_;
};

TEST_F(PulseServerTest, PlaysEverySampleUnchanged) {
    server_->start("48000", 2);
    setenv("ORVALO_AUDIO_OUTPUT", "pulse", 1);
    const auto output = AudioOutput::system();
    unsetenv("ORVALO_AUDIO_OUTPUT");
    EXPECT_EQ(output->format(), (AVAudioFormat{48000.0, 2}));
    const SinkRecorder recorder("quiet.monitor");
    std::atomic<int> policy{-1};
    source_.whileRendering = [&] { policy = sched_getscheduler(0); };
    output->start(source_);
    EXPECT_TRUE(
        testing::pollUntil([&] { return recorder.capture().longestExactStretch() >= 24000; }));
    output->stop();
    EXPECT_EQ(policy, SCHED_OTHER) << "RtAudio's thread keeps its scheduling";
    EXPECT_EQ(source_.ordinaryCallCount(), 0U);
    EXPECT_EQ(source_.denormalCount(), 0U);
    EXPECT_EQ(source_.overlapCount(), 0U);
    EXPECT_THAT(log_.messages(),
                ElementsAre("Audio output: PulseAudio, 48000 Hz, 2 channels, 512 frames."));
}

TEST_F(PulseServerTest, SurvivesAKilledServerAndReturnsToTheNextOne) {
    server_->start("48000", 2);
    const auto output = makeOutput();
    output->format();
    output->start(source_);
    ASSERT_TRUE(source_.waitForBlocks(5));
    server_->kill();
    ASSERT_TRUE(testing::pollUntil([&] { return source_.threadName() == "orvalo-null"; }));
    ASSERT_TRUE(source_.waitForBlocks(20));
    EXPECT_THAT(source_.formatChanges(), IsEmpty());
    server_->start("44100", 1);
    ASSERT_TRUE(testing::pollUntil([&] { return source_.threadName() != "orvalo-null"; }));
    ASSERT_TRUE(source_.waitForBlocks(5));
    EXPECT_THAT(source_.formatChanges(), ElementsAre(AVAudioFormat{44100.0, 1}));
    EXPECT_EQ(source_.lastChannelCount(), 1U);
    output->stop();
    EXPECT_EQ(source_.overlapCount(), 0U);
    EXPECT_THAT(log_.messages(),
                ElementsAre("Audio output: PulseAudio, 48000 Hz, 2 channels, 512 frames.",
                            "Audio output: PulseAudio went away; a silent clock takes its place "
                            "(48000 Hz, 2 channels, 512 frames).",
                            "Audio output: PulseAudio takes the place of the silent clock, 44100 "
                            "Hz, 1 channel, 512 frames."));
}

TEST_F(PulseServerTest, StartsNoServer) {
    setenv("ORVALO_AUDIO_OUTPUT", "pulse", 1);
    const auto output = AudioOutput::system();
    unsetenv("ORVALO_AUDIO_OUTPUT");
    try {
        output->start(source_);
        FAIL() << "no server runs";
    } catch (const std::exception& error) {
        EXPECT_STREQ(
            error.what(),
            "The audio output PulseAudio cannot be opened: no PulseAudio server is running.");
    }
    EXPECT_FALSE(isSinkThere());
    EXPECT_THAT(log_.messages(), IsEmpty());
}

TEST_F(PulseServerTest, AlsaPlaysThroughItsDefaultDevice) {
    const auto configuration = (folder_.path() / "asound.conf").string();
    std::ofstream(configuration) << "pcm.!default { type pulse }\nctl.!default { type pulse }\n";
    setenv("ALSA_CONFIG_PATH", configuration.c_str(), 1);
    server_->start("48000", 2);
    std::vector<std::unique_ptr<OutputDevice>> devices;
    devices.push_back(std::make_unique<AlsaDevice>());
    SupervisedOutput output(std::move(devices), SupervisedOutput::Absence::standIn);
    EXPECT_EQ(output.format(), (AVAudioFormat{48000.0, 2}));
    const SinkRecorder recorder("quiet.monitor");
    output.start(source_);
    // The signal is exact in 16-bit integers and in floats.
    EXPECT_TRUE(
        testing::pollUntil([&] { return recorder.capture().longestExactStretch() >= 24000; }));
    server_->kill();
    ASSERT_TRUE(testing::pollUntil([&] { return source_.threadName() == "orvalo-null"; }));
    output.stop();
    EXPECT_EQ(source_.overlapCount(), 0U);
    EXPECT_THAT(log_.messages(),
                ElementsAre("Audio output: ALSA, 48000 Hz, 2 channels, 512 frames.",
                            "Audio output: ALSA went away; a silent clock takes its place (48000 "
                            "Hz, 2 channels, 512 frames)."));
}

}  // namespace
}  // namespace orvalo
