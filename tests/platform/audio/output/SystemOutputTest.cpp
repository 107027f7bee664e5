#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <utility>

#include "platform/audio/output/AudioOutput.h"
#include "tests/platform/audio/output/LogLines.h"
#include "tests/platform/audio/output/RecordingSource.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo {
namespace {

using ::testing::ElementsAre;
using testing::LogLines;
using testing::RecordingSource;
using testing::TemporaryFolder;

/// A machine without any sound.
class SystemOutputTest : public ::testing::Test {
  protected:
    SystemOutputTest() {
        setenv("JACK_DEFAULT_SERVER", "orvalo-test-nothing", 1);
        setenv("PULSE_SERVER", ("unix:" + (folder_.path() / "nothing").string()).c_str(), 1);
        const auto configuration = (folder_.path() / "asound.conf").string();
        std::ofstream(configuration) << "defaults.pcm.card 0\n";
        setenv("ALSA_CONFIG_PATH", configuration.c_str(), 1);
        unsetenv("ORVALO_AUDIO_OUTPUT");
    }
    ~SystemOutputTest() override { unsetenv("ORVALO_AUDIO_OUTPUT"); }

    /// The log messages of a short play.
    std::vector<std::string> play() {
        const LogLines log;
        const auto output = AudioOutput::system();
        EXPECT_EQ(output->format(), (AVAudioFormat{48000.0, 2}));
        output->start(source_);
        EXPECT_TRUE(source_.waitForBlocks(3));
        output->stop();
        EXPECT_EQ(source_.threadName(), "orvalo-null");
        return log.messages();
    }

    const std::string standIn_ =
        "Audio output: none found; a silent clock takes its place (48000 Hz, 2 channels, 512 "
        "frames).";
    const TemporaryFolder folder_;
    RecordingSource source_;
};

TEST_F(SystemOutputTest, UsesTheClockWhenThereIsNoSound) {
    EXPECT_THAT(play(), ElementsAre(standIn_));
    setenv("ORVALO_AUDIO_OUTPUT", "auto", 1);
    EXPECT_THAT(play(), ElementsAre(standIn_));
}

TEST_F(SystemOutputTest, UsesTheClockWhenNoDescriptorIsLeft) {
    const LogLines log;
    const int next = dup(STDERR_FILENO);
    close(next);
    rlimit descriptors{};
    getrlimit(RLIMIT_NOFILE, &descriptors);
    const auto most = std::exchange(descriptors.rlim_cur, static_cast<rlim_t>(next));
    setrlimit(RLIMIT_NOFILE, &descriptors);
    const auto output = AudioOutput::system();
    EXPECT_EQ(output->format(), (AVAudioFormat{48000.0, 2}));
    output->start(source_);
    EXPECT_TRUE(source_.waitForBlocks(3));
    output->stop();
    descriptors.rlim_cur = most;
    setrlimit(RLIMIT_NOFILE, &descriptors);
    EXPECT_EQ(source_.threadName(), "orvalo-null");
    // libpulse writes its own lines first.
    EXPECT_EQ(log.messages().back(), standIn_);
}

TEST_F(SystemOutputTest, TheNullSettingUsesTheClock) {
    setenv("ORVALO_AUDIO_OUTPUT", "null", 1);
    EXPECT_THAT(play(), ElementsAre("Audio output: a silent clock (48000 Hz, 2 channels, 512 "
                                    "frames)."));
}

TEST_F(SystemOutputTest, WarnsOnceOfAnUnknownSettingAndTreatsItAsAuto) {
    setenv("ORVALO_AUDIO_OUTPUT", "Jack", 1);
    EXPECT_THAT(play(), ElementsAre("ORVALO_AUDIO_OUTPUT is \"Jack\", not auto, jack, pulse, alsa "
                                    "or null; taken as auto.",
                                    standIn_));
}

TEST_F(SystemOutputTest, StartThrowsWhenTheNamedDeviceIsAbsent) {
    const LogLines log;
    setenv("ORVALO_AUDIO_OUTPUT", "alsa", 1);
    const auto output = AudioOutput::system();
    try {
        output->start(source_);
        FAIL() << "no device is there";
    } catch (const std::exception& error) {
        EXPECT_STREQ(error.what(),
                     "The audio output ALSA cannot be opened: ALSA's default device does not open "
                     "(No such file or directory).");
    }
    EXPECT_THAT(log.messages(), ::testing::IsEmpty());
}

}  // namespace
}  // namespace orvalo
