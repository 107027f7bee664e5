#include "platform/audio/signal/AVAudioPCMBuffer.h"

#include <gtest/gtest.h>

#include <utility>

namespace orvalo::testing {
namespace {

TEST(AVAudioPCMBufferTest, IsSilentAndEmptyWhenNew) {
    const AVAudioPCMBuffer buffer({44100, 3}, 100);
    EXPECT_EQ(buffer.format(), (AVAudioFormat{44100, 3}));
    EXPECT_EQ(buffer.frameCapacity(), 100U);
    EXPECT_EQ(buffer.frameLength, 0U);
    for (std::size_t channel = 0; channel < 3; ++channel) {
        for (std::size_t frame = 0; frame < 100; ++frame) {
            ASSERT_EQ(buffer.floatChannelData()[channel][frame], 0.0F);
        }
    }
}

TEST(AVAudioPCMBufferTest, ViewsShareTheBuffersSamples) {
    const AVAudioPCMBuffer buffer({44100, 2}, 100);
    std::array<float*, kMaximumChannels> pointers{};
    const auto view = buffer.block(40, 60, pointers);
    EXPECT_EQ(view.channelCount, 2U);
    EXPECT_EQ(view.frameCount, 60U);
    view.channels[1][59] = 0.5F;
    EXPECT_EQ(buffer.floatChannelData()[1][99], 0.5F);
    EXPECT_EQ(buffer.block(10).channels[1], buffer.floatChannelData()[1]);
    EXPECT_EQ(buffer.block(10).frameCount, 10U);
}

TEST(AVAudioPCMBufferTest, MovingTheBufferKeepsItsSamplesInPlace) {
    AVAudioPCMBuffer buffer({44100, 2}, 100);
    float* const samples = buffer.floatChannelData()[1];
    const AVAudioPCMBuffer moved(std::move(buffer));
    EXPECT_EQ(moved.floatChannelData()[1], samples);
}

TEST(AVAudioPCMBufferDeathTest, BrokenPreconditionsEndTheProgram) {
    const AVAudioPCMBuffer buffer({44100, 2}, 100);
    std::array<float*, kMaximumChannels> pointers{};
    EXPECT_DEATH(buffer.block(101), "Fatal error: A view reaches beyond its audio buffer.");
    EXPECT_DEATH(buffer.block(90, 11, pointers),
                 "Fatal error: A view reaches beyond its audio buffer.");
    EXPECT_DEATH(AVAudioPCMBuffer({44100, 0}, 1),
                 "Fatal error: An audio buffer has 1 to 32 channels.");
    EXPECT_DEATH(AVAudioPCMBuffer({44100, 33}, 1),
                 "Fatal error: An audio buffer has 1 to 32 channels.");
}

}  // namespace
}  // namespace orvalo::testing
