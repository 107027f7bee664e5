#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <jack/jack.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/audio/output/JackClient.h"
#include "platform/audio/output/JackDevice.h"
#include "platform/audio/output/SupervisedOutput.h"
#include "tests/platform/audio/output/LogLines.h"
#include "tests/platform/audio/output/RecordingSource.h"
#include "tests/platform/audio/output/SignalCapture.h"
#include "tests/testing/PrivateJack.h"
#include "tests/testing/WaitUntil.h"

namespace {

std::atomic<bool> isStrerrorSlow{false};
std::atomic<int> strerrorEntered{0};
std::atomic<int> strerrorLeft{0};

}  // namespace

/// Replaces the C library's function, in which libjack's thread for notifications is when its
/// server has died: the end of the connection leaves errno at 0.
extern "C" char* slowStrerror(int error) __asm__("strerror");
char* slowStrerror(int error) {
    static auto* const original = reinterpret_cast<char* (*)(int)>(dlsym(RTLD_NEXT, "strerror"));
    if (error != 0 || !isStrerrorSlow) {
        return original(error);
    }
    ++strerrorEntered;
    // Longer than jack_client_close() needs to cancel the thread, which may end only in a call that
    // waits.
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(200);
    while (std::chrono::steady_clock::now() < end) {
    }
    char* const text = original(error);
    ++strerrorLeft;
    return text;
}

namespace orvalo {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::LogLines;
using testing::PrivateJack;
using testing::RecordingSource;
using testing::ServerProcess;
using testing::SignalCapture;

JackClient openClient(const char* name) {
    return {jack_client_open(name, JackNoStartServer, nullptr), jack_client_close};
}

/// Records what the client "Orvalo" plays.
class JackRecorder {
  public:
    JackRecorder() : client_(openClient("recorder")) {
        for (const char* name : {"left", "right"}) {
            ports_.push_back(jack_port_register(client_.get(), name, JACK_DEFAULT_AUDIO_TYPE,
                                                JackPortIsInput, 0));
        }
        jack_set_process_callback(client_.get(), process, this);
        jack_activate(client_.get());
    }
    /// Whether both of Orvalo's ports are connected to the recorder's.
    bool connect() {
        const auto join = [this](const char* from, const char* to) {
            const int result = jack_connect(client_.get(), from, to);
            return result == 0 || result == EEXIST;
        };
        return join("Orvalo:outport 0", "recorder:left") &&
               join("Orvalo:outport 1", "recorder:right");
    }
    const SignalCapture& capture() const { return capture_; }

  private:
    static int process(jack_nframes_t frames, void* self) {
        auto& recorder = *static_cast<JackRecorder*>(self);
        const auto* left = static_cast<float*>(jack_port_get_buffer(recorder.ports_[0], frames));
        const auto* right = static_cast<float*>(jack_port_get_buffer(recorder.ports_[1], frames));
        recorder.capture_.append(left, right, frames, 1);
        return 0;
    }

    SignalCapture capture_;
    std::vector<jack_port_t*> ports_;
    JackClient client_;
};

/// A private JACK server with the dummy driver.
class JackServerTest : public ::testing::Test {
  protected:
    /// inStep: the server waits for its clients in each period, so no client misses one.
    std::unique_ptr<ServerProcess> startServer(const std::string& rate, const std::string& period,
                                               bool inStep = false) {
        // libjack would free clients of a dead server that are still open.
        EXPECT_TRUE(testing::pollUntil([] { return probeError() == "no JACK server is running"; }));
        using Options = std::vector<std::string>;
        auto process = jack_.start({"--rate", rate, "--period", period},
                                   inStep ? Options{"--sync", "--timeout", "5000"} : Options{});
        EXPECT_TRUE(testing::pollUntil([] { return openClient("waiting") != nullptr; }));
        return process;
    }

    static std::string probeError() {
        try {
            JackDevice().probe();
        } catch (const NSError& error) {
            return error.what();
        }
        return "";
    }

    std::unique_ptr<SupervisedOutput> makeOutput(SupervisedOutput::Absence absence) const {
        std::vector<std::unique_ptr<OutputDevice>> devices;
        devices.push_back(std::make_unique<JackDevice>());
        return std::make_unique<SupervisedOutput>(std::move(devices), absence, timing_);
    }

    PrivateJack jack_;
    SupervisedOutput::Timing timing_{milliseconds(3000), milliseconds(50), milliseconds(50)};
    RecordingSource source_;
    LogLines log_;
};

TEST_F(JackServerTest, PlaysEverySampleUnchanged) {
    const auto server = startServer("48000", "64", true);
    setenv("ORVALO_AUDIO_OUTPUT", "auto", 1);
    const auto output = AudioOutput::system();
    unsetenv("ORVALO_AUDIO_OUTPUT");
    EXPECT_EQ(output->format(), (AVAudioFormat{48000.0, 2}));
    output->start(source_);
    JackRecorder recorder;
    ASSERT_TRUE(testing::pollUntil([&] { return recorder.connect(); }));
    EXPECT_TRUE(
        testing::pollUntil([&] { return recorder.capture().longestExactStretch() >= 24000; }));
    output->stop();
    EXPECT_EQ(source_.smallestFrameCount(), 64U);
    EXPECT_EQ(source_.largestFrameCount(), 64U);
    EXPECT_EQ(source_.ordinaryCallCount(), 0U);
    EXPECT_EQ(source_.denormalCount(), 0U);
    EXPECT_EQ(source_.overlapCount(), 0U);
    EXPECT_THAT(log_.messages(),
                ElementsAre("Audio output: JACK, 48000 Hz, 2 channels, 64 frames."));
}

TEST_F(JackServerTest, RestartsAfterStop) {
    const auto server = startServer("44100", "128");
    const auto output = makeOutput(SupervisedOutput::Absence::fail);
    for (int round = 0; round < 3; ++round) {
        output->start(source_);
        ASSERT_TRUE(source_.waitForBlocks(5));
        output->stop();
        const auto count = source_.blockCount();
        const auto client = openClient("bystander");
        EXPECT_EQ(jack_port_by_name(client.get(), "Orvalo:outport 0"), nullptr);
        EXPECT_EQ(source_.blockCount(), count);
    }
    EXPECT_EQ(output->format(), (AVAudioFormat{44100.0, 2}));
    EXPECT_EQ(source_.lastFrameCount(), 128U);
}

TEST_F(JackServerTest, SurvivesAKilledServerAndReturnsToTheNextOne) {
    auto server = startServer("48000", "64");
    const auto output = makeOutput(SupervisedOutput::Absence::standIn);
    output->format();
    output->start(source_);
    ASSERT_TRUE(source_.waitForBlocks(20));
    server->kill();
    ASSERT_TRUE(testing::pollUntil([&] { return source_.threadName() == "orvalo-null"; }));
    ASSERT_TRUE(source_.waitForBlocks(20));
    EXPECT_THAT(source_.formatChanges(), IsEmpty());
    server = startServer("44100", "128");
    ASSERT_TRUE(testing::pollUntil([&] { return source_.lastFrameCount() == 128; }));
    ASSERT_TRUE(source_.waitForBlocks(20));
    EXPECT_THAT(source_.formatChanges(), ElementsAre(AVAudioFormat{44100.0, 2}));
    output->stop();
    EXPECT_EQ(source_.overlapCount(), 0U);
    EXPECT_THAT(log_.messages(),
                ElementsAre("Audio output: JACK, 48000 Hz, 2 channels, 64 frames.",
                            "Audio output: JACK went away; a silent clock takes its place (48000 "
                            "Hz, 2 channels, 64 frames).",
                            "Audio output: JACK takes the place of the silent clock, 44100 Hz, 2 "
                            "channels, 128 frames."));
}

TEST_F(JackServerTest, StopsWhileTheServerDies) {
    for (int round = 0; round < 3; ++round) {
        auto server = startServer("48000", "64");
        const auto output = makeOutput(SupervisedOutput::Absence::standIn);
        output->start(source_);
        ASSERT_TRUE(source_.waitForBlocks(5));
        server->kill();
        output->stop();
    }
}

// strerror() holds a lock, without which the next probe of PulseAudio would wait for ever.
TEST_F(JackServerTest, CancelsNoThreadInsideStrerror) {
    auto server = startServer("48000", "64");
    auto output = makeOutput(SupervisedOutput::Absence::standIn);
    output->start(source_);
    ASSERT_TRUE(source_.waitForBlocks(5));
    isStrerrorSlow = true;
    server->kill();
    ASSERT_TRUE(testing::pollUntil([] { return strerrorEntered == 1; }));
    output->stop();
    EXPECT_TRUE(testing::pollUntil([] { return strerrorLeft == 1; }, std::chrono::seconds(10)));
    EXPECT_EQ(strerrorEntered, 1);
    isStrerrorSlow = false;
}

TEST_F(JackServerTest, CancelsNoThreadOfAnIdleClientInsideStrerror) {
    auto server = startServer("48000", "64");
    auto idle = openIdleJackClient();
    const int entered = strerrorEntered;
    const int left = strerrorLeft;
    isStrerrorSlow = true;
    server->kill();
    ASSERT_TRUE(testing::pollUntil([&] { return strerrorEntered > entered; }));
    idle.reset();
    EXPECT_TRUE(testing::pollUntil([&] { return strerrorLeft > left; }, std::chrono::seconds(10)));
    isStrerrorSlow = false;
}

TEST_F(JackServerTest, FollowsAChangeOfThePeriod) {
    const auto server = startServer("48000", "64");
    const auto output = makeOutput(SupervisedOutput::Absence::standIn);
    output->start(source_);
    ASSERT_TRUE(source_.waitForBlocks(20));
    ASSERT_EQ(jack_set_buffer_size(openClient("changer").get(), 256), 0);
    ASSERT_TRUE(testing::pollUntil([&] { return source_.lastFrameCount() == 256; }));
    ASSERT_TRUE(source_.waitForBlocks(20));
    output->stop();
    EXPECT_THAT(log_.messages(),
                ElementsAre("Audio output: JACK, 48000 Hz, 2 channels, 64 frames.",
                            "Audio output: JACK stopped and was opened again, 48000 Hz, 2 "
                            "channels, 256 frames."));
}

TEST_F(JackServerTest, TakesAVirtualSinkWhenThereAreNoPhysicalPortsAndNeverARecorder) {
    const auto server = jack_.start({"--playback", "0"});
    ASSERT_TRUE(testing::pollUntil([] { return openClient("waiting") != nullptr; }));
    const JackRecorder recorder;
    EXPECT_EQ(probeError(), "the JACK server has no playback port");
    const auto sink = openClient("virtual sink");
    for (const char* name : {"playback_FL", "playback_FR"}) {
        jack_port_register(sink.get(), name, JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0);
    }
    ASSERT_EQ(jack_activate(sink.get()), 0);
    EXPECT_EQ(JackDevice().probe().deviceName, "virtual sink");
    const auto output = makeOutput(SupervisedOutput::Absence::fail);
    output->start(source_);
    // The server tells other clients of a connection in one of its next periods.
    auto* const port = jack_port_by_name(sink.get(), "virtual sink:playback_FR");
    EXPECT_TRUE(testing::pollUntil([port] { return jack_port_connected(port) == 1; }));
    output->stop();
}

TEST_F(JackServerTest, CountsXruns) {
    const auto server = startServer("48000", "64");
    const auto output = makeOutput(SupervisedOutput::Absence::fail);
    std::atomic<bool> isLate{true};
    source_.whileRendering = [&] {
        if (isLate.exchange(false)) {
            // Many periods of 1.3 ms.
            std::this_thread::sleep_for(milliseconds(100));
        }
    };
    output->start(source_);
    EXPECT_TRUE(testing::pollUntil([&] { return output->xrunCount() > 0; }));
    output->stop();
}

TEST_F(JackServerTest, ReplacesAHangingServerByTheClock) {
    timing_.silence = milliseconds(300);
    auto server = startServer("48000", "64");
    const auto output = makeOutput(SupervisedOutput::Absence::standIn);
    output->start(source_);
    ASSERT_TRUE(source_.waitForBlocks(20));
    server->signal(SIGSTOP);
    ASSERT_TRUE(testing::pollUntil([&] { return source_.threadName() == "orvalo-null"; }));
    // Meanwhile the server is probed repeatedly.
    ASSERT_TRUE(source_.waitForBlocks(200));
    output->stop();
    EXPECT_EQ(log_.messages().back(),
              "Audio output: JACK went away; a silent clock takes its place (48000 Hz, 2 "
              "channels, 64 frames).");
    // The client that was left open ends with the server.
    server->kill();
}

/// The connections to sockets of that JACK server.
std::size_t connections(const std::string& server) {
    std::ifstream sockets("/proc/net/unix");
    std::size_t count = 0;
    for (std::string line; std::getline(sockets, line);) {
        count += line.find(server) != std::string::npos ? 1 : 0;
    }
    return count;
}

TEST_F(JackServerTest, AServerKilledWhileAClientOpensIsReplacedByTheClock) {
    timing_.retry = std::chrono::hours(1);
    for (const bool hasProbed : {false, true}) {
        const auto server = startServer("48000", "64");
        const LogLines log;
        const auto output = makeOutput(SupervisedOutput::Absence::fail);
        if (hasProbed) {
            output->format();
            // The probe's client is closed in its turn.
            EXPECT_TRUE(libjack().finishWithin(std::chrono::minutes(1), [] {}));
        }
        // A stopped server keeps the client waiting in jack_client_open().
        const auto before = connections(jack_.name());
        server->signal(SIGSTOP);
        std::thread starting([&] { output->start(source_); });
        EXPECT_TRUE(testing::pollUntil([&] { return connections(jack_.name()) > before; }));
        server->kill();
        starting.join();
        output->stop();
        EXPECT_THAT(log.messages(),
                    ElementsAre("Audio output: JACK went away while it was opened.",
                                "Audio output: none found; a silent clock takes its place (48000 "
                                "Hz, 2 channels, 512 frames)."));
    }
}

TEST_F(JackServerTest, AServerKilledAfterTheProbeIsReplacedByTheClock) {
    timing_.retry = std::chrono::hours(1);
    const auto server = startServer("48000", "64");
    const auto output = makeOutput(SupervisedOutput::Absence::fail);
    output->format();
    server->kill();
    output->start(source_);
    output->stop();
    EXPECT_THAT(log_.messages(),
                ElementsAre("Audio output: JACK went away while it was opened.",
                            "Audio output: none found; a silent clock takes its place (48000 Hz, "
                            "2 channels, 512 frames)."));
}

TEST_F(JackServerTest, StartsNoServer) {
    setenv("ORVALO_AUDIO_OUTPUT", "jack", 1);
    const auto output = AudioOutput::system();
    unsetenv("ORVALO_AUDIO_OUTPUT");
    EXPECT_EQ(output->format(), (AVAudioFormat{48000.0, 2}));
    try {
        output->start(source_);
        FAIL() << "no server runs";
    } catch (const std::exception& error) {
        EXPECT_STREQ(error.what(),
                     "The audio output JACK cannot be opened: no JACK server is running.");
    }
    EXPECT_EQ(openClient("bystander"), nullptr);
    EXPECT_THAT(log_.messages(), IsEmpty()) << "also nothing from libjack";
}

}  // namespace
}  // namespace orvalo
