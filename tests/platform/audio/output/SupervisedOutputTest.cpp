#include "platform/audio/output/SupervisedOutput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/foundation/NSError.h"
#include "tests/platform/audio/output/FakeDevice.h"
#include "tests/platform/audio/output/LogLines.h"
#include "tests/platform/audio/output/RecordingSource.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using ::testing::ElementsAre;
using testing::FakeControls;
using testing::FakeDevice;
using ::testing::IsEmpty;
using testing::LogLines;
using testing::RecordingSource;
using Absence = SupervisedOutput::Absence;

/// Two devices, Alpha before Beta. By default a stream may stay silent, and absent devices are
/// probed all the time.
class SupervisedOutputTest : public ::testing::Test {
  protected:
    std::unique_ptr<SupervisedOutput> makeOutput(Absence absence = Absence::standIn) {
        std::vector<std::unique_ptr<OutputDevice>> devices;
        devices.push_back(std::make_unique<FakeDevice>("Alpha", alpha_));
        devices.push_back(std::make_unique<FakeDevice>("Beta", beta_));
        return std::make_unique<SupervisedOutput>(std::move(devices), absence, timing_);
    }

    bool waitForMessages(std::size_t count) {
        return testing::pollUntil([&] { return log_.messages().size() >= count; });
    }

    const std::shared_ptr<FakeControls> alpha_ = std::make_shared<FakeControls>();
    const std::shared_ptr<FakeControls> beta_ = std::make_shared<FakeControls>();
    SupervisedOutput::Timing timing_{hours(1), milliseconds(5), milliseconds(5)};
    LogLines log_;
    RecordingSource source_;
};

TEST_F(SupervisedOutputTest, PlaysOnTheFirstDeviceAndLogsItOnce) {
    const auto output = makeOutput();
    EXPECT_EQ(output->format(), (AVAudioFormat{48000.0, 2}));
    EXPECT_EQ(alpha_->openCount, 0) << "format() opens no device";
    output->start(source_);
    ASSERT_TRUE(source_.waitForBlocks(10));
    output->stop();
    EXPECT_THAT(log_.messages(),
                ElementsAre("Audio output: Alpha, 48000 Hz, 2 channels, 32 frames."));
    EXPECT_EQ(alpha_->liveCount, 0);
    EXPECT_EQ(beta_->openCount, 0);
    EXPECT_THAT(source_.formatChanges(), IsEmpty());
    EXPECT_EQ(source_.overlapCount(), 0U);
}

TEST_F(SupervisedOutputTest, SkipsDevicesThatDoNotOpen) {
    alpha_->opens = false;
    const auto output = makeOutput();
    output->start(source_);
    output->stop();
    EXPECT_THAT(log_.messages(),
                ElementsAre("Audio output: Beta, 48000 Hz, 2 channels, 32 frames."));
}

TEST_F(SupervisedOutputTest, UsesTheClockWhenEveryDeviceIsAbsent) {
    alpha_->isThere = false;
    beta_->isThere = false;
    timing_.retry = hours(1);
    const auto output = makeOutput();
    EXPECT_EQ(output->format(), (AVAudioFormat{48000.0, 2}));
    output->start(source_);
    ASSERT_TRUE(source_.waitForBlocks(3));
    output->stop();
    EXPECT_EQ(source_.lastFrameCount(), 512U);
    EXPECT_THAT(source_.missingReports(), ElementsAre(true));
    EXPECT_THAT(log_.messages(),
                ElementsAre("Audio output: none found; a silent clock takes its place (48000 Hz, "
                            "2 channels, 512 frames)."));
}

TEST_F(SupervisedOutputTest, UsesTheClockWithoutDevices) {
    SupervisedOutput output({}, Absence::standIn);
    output.start(source_);
    ASSERT_TRUE(source_.waitForBlocks(3));
    output.stop();
    EXPECT_THAT(source_.missingReports(), IsEmpty()) << "no device was asked for";
    EXPECT_THAT(log_.messages(),
                ElementsAre("Audio output: a silent clock (48000 Hz, 2 channels, 512 frames)."));
}

TEST_F(SupervisedOutputTest, StartThrowsWhenTheNamedDeviceDoesNotOpen) {
    std::vector<std::unique_ptr<OutputDevice>> devices;
    devices.push_back(std::make_unique<FakeDevice>("Alpha", alpha_));
    SupervisedOutput output(std::move(devices), Absence::fail, timing_);
    const auto refusal = [&]() -> std::string {
        try {
            output.start(source_);
        } catch (const NSError& error) {
            return error.localizedDescription();
        }
        return "";
    };
    alpha_->isThere = false;
    EXPECT_EQ(refusal(), "The audio output Alpha cannot be opened: no Alpha is there.");
    alpha_->isThere = true;
    alpha_->opens = false;
    EXPECT_EQ(refusal(), "The audio output Alpha cannot be opened: Alpha is busy.");
    alpha_->opens = true;
    EXPECT_EQ(refusal(), "") << "a failed start changes nothing";
    ASSERT_TRUE(source_.waitForBlocks(3));
    output.stop();
}

TEST_F(SupervisedOutputTest, TheClockStandsInForANamedDeviceThatWentAwayBeforeItWasOpen) {
    timing_.retry = hours(1);
    for (const bool diesWhileItOpens : {false, true}) {
        std::vector<std::unique_ptr<OutputDevice>> devices;
        devices.push_back(std::make_unique<FakeDevice>("Alpha", alpha_));
        SupervisedOutput output(std::move(devices), Absence::fail, timing_);
        const LogLines log;
        alpha_->isThere = true;
        alpha_->diesWhileItOpens = diesWhileItOpens;
        output.format();
        alpha_->isThere = diesWhileItOpens;
        output.start(source_);
        output.stop();
        EXPECT_THAT(log.messages(),
                    ElementsAre("Audio output: Alpha went away while it was opened.",
                                "Audio output: none found; a silent clock takes its place (48000 "
                                "Hz, 2 channels, 512 frames)."));
    }
}

TEST_F(SupervisedOutputTest, TheNextDeviceReplacesOneThatWentAwayBeforeItWasOpen) {
    const auto output = makeOutput();
    alpha_->diesWhileItOpens = true;
    output->start(source_);
    output->stop();
    EXPECT_THAT(log_.messages(),
                ElementsAre("Audio output: Alpha went away while it was opened.",
                            "Audio output: Beta, 48000 Hz, 2 channels, 32 frames."));
}

TEST_F(SupervisedOutputTest, ReopensADeadStreamWithItsNewFormat) {
    const auto output = makeOutput();
    output->format();
    output->start(source_);
    ASSERT_TRUE(source_.waitForBlocks(3));
    std::atomic<std::uint64_t> blocksAtChange{0};
    source_.whileFormatChanges = [&] {
        blocksAtChange = source_.blockCount();
        // A stream that renders during the format change would add to the overlap count.
        std::this_thread::sleep_for(milliseconds(20));
    };
    alpha_->sampleRate = 44100.0;
    alpha_->frameCount = 64;
    alpha_->endStream();
    ASSERT_TRUE(testing::pollUntil([&] { return source_.lastFrameCount() == 64; }));
    EXPECT_EQ(output->format(), (AVAudioFormat{44100.0, 2}));
    output->stop();
    EXPECT_THAT(source_.formatChanges(), ElementsAre(AVAudioFormat{44100.0, 2}));
    EXPECT_GE(blocksAtChange, 3U);
    EXPECT_EQ(source_.overlapCount(), 0U);
    EXPECT_EQ(alpha_->openCount, 2);
    EXPECT_THAT(log_.messages(),
                ElementsAre("Audio output: Alpha, 48000 Hz, 2 channels, 32 frames.",
                            "Audio output: Alpha stopped and was opened again, 44100 Hz, 2 "
                            "channels, 64 frames."));
}

TEST_F(SupervisedOutputTest, ReplacesADeadDeviceByTheNextOne) {
    beta_->frameCount = 16;
    const auto output = makeOutput();
    output->start(source_);
    ASSERT_TRUE(source_.waitForBlocks(3));
    alpha_->isThere = false;
    alpha_->endStream();
    ASSERT_TRUE(testing::pollUntil([&] { return source_.lastFrameCount() == 16; }));
    output->stop();
    EXPECT_THAT(log_.messages(),
                ElementsAre("Audio output: Alpha, 48000 Hz, 2 channels, 32 frames.",
                            "Audio output: Alpha went away; Beta takes its place, 48000 Hz, 2 "
                            "channels, 16 frames."));
}

TEST_F(SupervisedOutputTest, UsesTheClockUntilADeviceReturns) {
    beta_->isThere = false;
    const auto output = makeOutput();
    output->format();
    output->start(source_);
    ASSERT_TRUE(source_.waitForBlocks(3));
    alpha_->isThere = false;
    alpha_->endStream();
    ASSERT_TRUE(waitForMessages(2));
    ASSERT_TRUE(source_.waitForBlocks(20));
    EXPECT_EQ(source_.threadName(), "orvalo-null");
    EXPECT_EQ(source_.lastFrameCount(), 32U);
    EXPECT_THAT(source_.formatChanges(), IsEmpty()) << "the clock keeps the device's format";
    alpha_->sampleRate = 96000.0;
    alpha_->isThere = true;
    ASSERT_TRUE(testing::pollUntil([&] { return !source_.formatChanges().empty(); }));
    ASSERT_TRUE(source_.waitForBlocks(3));
    EXPECT_NE(source_.threadName(), "orvalo-null");
    output->stop();
    EXPECT_THAT(source_.formatChanges(), ElementsAre(AVAudioFormat{96000.0, 2}));
    EXPECT_THAT(source_.missingReports(), ElementsAre(true, false));
    EXPECT_EQ(source_.overlapCount(), 0U);
    EXPECT_THAT(log_.messages(),
                ElementsAre("Audio output: Alpha, 48000 Hz, 2 channels, 32 frames.",
                            "Audio output: Alpha went away; a silent clock takes its place (48000 "
                            "Hz, 2 channels, 32 frames).",
                            "Audio output: Alpha takes the place of the silent clock, 96000 Hz, 2 "
                            "channels, 32 frames."));
}

TEST_F(SupervisedOutputTest, KeepsRenderingWhileItProbesADevice) {
    alpha_->isThere = false;
    beta_->isThere = false;
    std::atomic<bool> isHeld{false};
    std::atomic<bool> isProbing{false};
    alpha_->whileProbing = [&] {
        while (isHeld) {
            isProbing = true;
            std::this_thread::sleep_for(milliseconds(1));
        }
    };
    const auto output = makeOutput();
    output->start(source_);
    isHeld = true;
    ASSERT_TRUE(testing::pollUntil([&] { return isProbing.load(); }));
    EXPECT_TRUE(source_.waitForBlocks(10));
    isHeld = false;
    output->stop();
}

TEST_F(SupervisedOutputTest, ReplacesAStreamThatStopsRendering) {
    // Longer than a busy machine delays the stream's thread before it is frozen.
    timing_.silence = milliseconds(2000);
    timing_.retry = hours(1);
    const auto output = makeOutput();
    output->start(source_);
    ASSERT_TRUE(source_.waitForBlocks(3));
    beta_->frameCount = 16;
    alpha_->isThere = false;
    alpha_->isFrozen = true;
    ASSERT_TRUE(waitForMessages(2));
    output->stop();
    EXPECT_EQ(log_.messages()[1],
              "Audio output: Alpha went away; Beta takes its place, 48000 Hz, 2 channels, 16 "
              "frames.");
}

TEST_F(SupervisedOutputTest, UsesTheClockWhenAReopenedStreamDiesAtOnce) {
    timing_.retry = hours(1);
    const auto output = makeOutput();
    output->start(source_);
    alpha_->endStream();
    ASSERT_TRUE(waitForMessages(2));
    ASSERT_TRUE(source_.waitForBlocks(3));
    alpha_->endStream();
    ASSERT_TRUE(waitForMessages(3));
    ASSERT_TRUE(source_.waitForBlocks(3));
    EXPECT_EQ(source_.threadName(), "orvalo-null");
    output->stop();
    EXPECT_EQ(log_.messages()[2],
              "Audio output: Alpha went away; a silent clock takes its place (48000 Hz, 2 "
              "channels, 32 frames).");
    EXPECT_EQ(alpha_->openCount, 2);
}

TEST_F(SupervisedOutputTest, SettlesOnTheClockWhenADeviceOpensAndRendersNothing) {
    timing_.silence = milliseconds(1000);
    timing_.longestPause = milliseconds(20);
    alpha_->isFrozen = true;
    beta_->isThere = false;
    const auto output = makeOutput();
    output->format();
    output->start(source_);
    // Tried again and again, while the clock plays on.
    ASSERT_TRUE(testing::pollUntil([&] { return alpha_->openCount >= 3; }));
    EXPECT_EQ(source_.threadName(), "orvalo-null");
    alpha_->isFrozen = false;
    ASSERT_TRUE(waitForMessages(3));
    ASSERT_TRUE(source_.waitForBlocks(3));
    EXPECT_NE(source_.threadName(), "orvalo-null");
    output->stop();
    EXPECT_EQ(source_.overlapCount(), 0U);
    EXPECT_THAT(source_.missingReports(), ElementsAre(true, false));
    EXPECT_THAT(log_.messages(),
                ElementsAre("Audio output: Alpha, 48000 Hz, 2 channels, 32 frames.",
                            "Audio output: Alpha does not play; a silent clock takes its place "
                            "(48000 Hz, 2 channels, 32 frames).",
                            "Audio output: Alpha takes the place of the silent clock, 48000 Hz, 2 "
                            "channels, 32 frames."));
}

TEST_F(SupervisedOutputTest, PlaysOnTheNextDeviceWhenTheFirstRendersNothing) {
    timing_.silence = milliseconds(2000);
    // Alpha fails twice before Beta plays, and then rests for twice as long as this.
    timing_.retry = milliseconds(2000);
    timing_.longestPause = hours(1);
    alpha_->isFrozen = true;
    const auto output = makeOutput();
    output->start(source_);
    ASSERT_TRUE(waitForMessages(3));
    output->stop();
    // Also at the next start, which does not wait for the first device.
    output->start(source_);
    output->stop();
    EXPECT_THAT(log_.messages(),
                ElementsAre("Audio output: Alpha, 48000 Hz, 2 channels, 32 frames.",
                            "Audio output: Alpha does not play; a silent clock takes its place "
                            "(48000 Hz, 2 channels, 32 frames).",
                            "Audio output: Beta takes the place of the silent clock, 48000 Hz, 2 "
                            "channels, 32 frames.",
                            "Audio output: Beta, 48000 Hz, 2 channels, 32 frames."));
}

TEST_F(SupervisedOutputTest, ReportsAFormatThatDiffersFromTheStatedOne) {
    const auto output = makeOutput();
    EXPECT_EQ(output->format(), (AVAudioFormat{48000.0, 2}));
    alpha_->sampleRate = 44100.0;
    std::atomic<std::uint64_t> blocksAtChange{1};
    source_.whileFormatChanges = [&] { blocksAtChange = source_.blockCount(); };
    output->start(source_);
    ASSERT_TRUE(source_.waitForBlocks(1));
    output->stop();
    EXPECT_THAT(source_.formatChanges(), ElementsAre(AVAudioFormat{44100.0, 2}));
    EXPECT_EQ(blocksAtChange, 0U) << "nothing is rendered before the report";
}

TEST_F(SupervisedOutputTest, CountsXrunsOfAllStreamsSinceStart) {
    const auto output = makeOutput();
    output->start(source_);
    alpha_->countXruns(2);
    EXPECT_EQ(output->xrunCount(), 2U);
    alpha_->endStream();
    ASSERT_TRUE(waitForMessages(2));
    alpha_->countXruns(3);
    EXPECT_EQ(output->xrunCount(), 5U);
    output->stop();
    EXPECT_EQ(output->xrunCount(), 5U);
    output->start(source_);
    EXPECT_EQ(output->xrunCount(), 0U);
    output->stop();
}

TEST_F(SupervisedOutputTest, StopIsSafeWithoutStartAndTwiceAndOnDestruction) {
    auto output = makeOutput();
    output->stop();
    for (int round = 0; round < 20; ++round) {
        output->start(source_);
        output->stop();
        EXPECT_EQ(alpha_->liveCount, 0);
    }
    output->stop();
    output->start(source_);
    output.reset();
    EXPECT_EQ(alpha_->liveCount, 0);
    EXPECT_EQ(source_.overlapCount(), 0U);
}

TEST_F(SupervisedOutputTest, MakesNoCallAfterStopWhileDevicesChange) {
    std::atomic<bool> stopped{false};
    std::atomic<int> lateCalls{0};
    source_.whileRendering = [&] { lateCalls += stopped ? 1 : 0; };
    source_.whileFormatChanges = source_.whileRendering;
    const auto output = makeOutput();
    output->format();
    for (int round = 0; round < 30; ++round) {
        stopped = false;
        output->start(source_);
        alpha_->sampleRate = round % 2 == 0 ? 44100.0 : 48000.0;
        alpha_->isThere = round % 3 != 0;
        alpha_->endStream();
        if (round % 5 != 0) {
            ASSERT_TRUE(source_.waitForBlocks(static_cast<std::uint64_t>(round % 5)));
        }
        output->stop();
        stopped = true;
        alpha_->isThere = true;
        ASSERT_EQ(alpha_->liveCount + beta_->liveCount, 0);
    }
    EXPECT_EQ(lateCalls, 0);
    EXPECT_EQ(source_.overlapCount(), 0U);
}

TEST(SupervisedOutputDeathTest, EndsTheProgramWhenStartedTwice) {
    RecordingSource source;
    SupervisedOutput output({}, Absence::standIn);
    output.start(source);
    EXPECT_DEATH(output.start(source), "Fatal error: AudioOutput: started while it plays.");
}

}  // namespace
}  // namespace orvalo
