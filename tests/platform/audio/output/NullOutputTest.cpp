#include "platform/audio/output/NullOutput.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "tests/platform/audio/output/RecordingSource.h"

namespace orvalo {
namespace {

using testing::RecordingSource;

TEST(NullOutput, FormatIsTheGivenOne) {
    EXPECT_EQ(NullOutput().format(), (AVAudioFormat{48000.0, 2}));
    EXPECT_EQ(NullOutput({44100.0, 1}, 64).format(), (AVAudioFormat{44100.0, 1}));
}

TEST(NullOutput, RendersBlocksOfOneQuantum) {
    RecordingSource source;
    NullOutput output({96000.0, 3}, 64);
    output.start(source);
    ASSERT_TRUE(source.waitForBlocks(50));
    output.stop();
    EXPECT_EQ(source.smallestFrameCount(), 64U);
    EXPECT_EQ(source.largestFrameCount(), 64U);
    EXPECT_EQ(source.lastChannelCount(), 3U);
    EXPECT_TRUE(source.formatChanges().empty());
}

TEST(NullOutput, RendersOnItsOwnThreadInARealTimeScope) {
    RecordingSource source;
    NullOutput output({48000.0, 2}, 64);
    output.start(source);
    ASSERT_TRUE(source.waitForBlocks(50));
    output.stop();
    EXPECT_EQ(source.threadName(), "orvalo-null");
    EXPECT_EQ(source.ordinaryCallCount(), 0U);
    EXPECT_EQ(source.denormalCount(), 0U);
    EXPECT_EQ(source.overlapCount(), 0U);
}

TEST(NullOutput, RendersNoFasterThanTheClock) {
    RecordingSource source;
    NullOutput output({48000.0, 2}, 480);
    const auto begin = std::chrono::steady_clock::now();
    output.start(source);
    ASSERT_TRUE(source.waitForBlocks(31));
    const auto end = std::chrono::steady_clock::now();
    output.stop();
    // The 31st block is due 30 periods of 10 ms after the first.
    EXPECT_GE(end - begin, std::chrono::milliseconds(300));
}

TEST(NullOutput, MakesNoCallAfterStop) {
    RecordingSource source;
    std::atomic<bool> stopped{false};
    std::atomic<int> lateCalls{0};
    source.whileRendering = [&] { lateCalls += stopped ? 1 : 0; };
    NullOutput output({192000.0, 1}, 16);
    for (int round = 0; round < 20; ++round) {
        stopped = false;
        output.start(source);
        ASSERT_TRUE(source.waitForBlocks(3));
        output.stop();
        stopped = true;
        const auto count = source.blockCount();
        std::this_thread::yield();
        EXPECT_EQ(source.blockCount(), count);
    }
    EXPECT_EQ(lateCalls, 0);
}

TEST(NullOutput, StopIsSafeTwiceAndWithoutStart) {
    RecordingSource source;
    NullOutput output;
    output.stop();
    output.start(source);
    output.stop();
    output.stop();
}

TEST(NullOutput, DestructionStopsRendering) {
    RecordingSource source;
    {
        NullOutput output({48000.0, 2}, 64);
        output.start(source);
        ASSERT_TRUE(source.waitForBlocks(3));
    }
    const auto count = source.blockCount();
    NullOutput other({48000.0, 2}, 64);
    RecordingSource another;
    other.start(another);
    ASSERT_TRUE(another.waitForBlocks(10));
    EXPECT_EQ(source.blockCount(), count);
}

TEST(NullOutput, CountsMissedPeriodsAndSkipsThem) {
    RecordingSource source;
    std::atomic<int> calls{0};
    source.whileRendering = [&] {
        // 20 periods of 10 ms.
        if (++calls == 2) {
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
        }
    };
    NullOutput output({48000.0, 2}, 480);
    const auto begin = std::chrono::steady_clock::now();
    output.start(source);
    ASSERT_TRUE(source.waitForBlocks(10));
    const auto end = std::chrono::steady_clock::now();
    EXPECT_GE(output.xrunCount(), 19U);
    output.stop();
    // The eight blocks after the long one are a period apart.
    EXPECT_GE(end - begin, std::chrono::milliseconds(270));
    source.whileRendering = nullptr;
    output.start(source);
    EXPECT_LT(output.xrunCount(), 19U) << "counts from the last start";
    output.stop();
}

TEST(NullOutput, CatchesUpWhenLateByLessThanTwoPeriods) {
    RecordingSource source;
    std::atomic<int> calls{0};
    source.whileRendering = [&] {
        // Two periods of 500 ms, the call's own among them, and a margin below a third.
        if (++calls == 2) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1050));
        }
    };
    NullOutput output({48000.0, 2}, 24000);
    output.start(source);
    ASSERT_TRUE(source.waitForBlocks(5));
    EXPECT_EQ(output.xrunCount(), 0U);
    output.stop();
}

TEST(NullOutputDeathTest, EndsTheProgramWhenStartedTwice) {
    RecordingSource source;
    NullOutput output;
    output.start(source);
    EXPECT_DEATH(output.start(source), "Fatal error: NullOutput: started while it plays.");
    EXPECT_DEATH(NullOutput({48000.0, 2}, 0),
                 "Fatal error: NullOutput: a quantum has at least one frame.");
}

}  // namespace
}  // namespace orvalo
