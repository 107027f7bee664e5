#include <gtest/gtest.h>

#include <vector>

#include "platform/audio/signal/AVAudioPCMBuffer.h"
#include "platform/audio/signal/MapChannels.h"

namespace orvalo::testing {
namespace {

// Frame 1 of each output channel, from input channels that hold 1, 2, 4, ...
std::vector<float> mapped(std::uint32_t from, std::uint32_t to) {
    const AVAudioPCMBuffer input({48000, from}, 2);
    const AVAudioPCMBuffer output({48000, to}, 2);
    for (std::uint32_t channel = 0; channel < from; ++channel) {
        input.floatChannelData()[channel][1] = static_cast<float>(1U << channel);
    }
    for (std::uint32_t channel = 0; channel < to; ++channel) {
        output.floatChannelData()[channel][1] = 99.0F;
    }
    mapChannels(input.block(2), output.block(2));
    std::vector<float> result;
    for (std::uint32_t channel = 0; channel < to; ++channel) {
        EXPECT_EQ(output.floatChannelData()[channel][0], 0.0F);
        result.push_back(output.floatChannelData()[channel][1]);
    }
    return result;
}

TEST(MapChannelsTest, OneInputChannelIsRepeated) {
    EXPECT_EQ(mapped(1, 3), (std::vector{1.0F, 1.0F, 1.0F}));
}

TEST(MapChannelsTest, OneOutputChannelIsTheMeanOfTheInputs) {
    EXPECT_EQ(mapped(2, 1), std::vector{1.5F});
    EXPECT_EQ(mapped(4, 1), std::vector{3.75F});
}

TEST(MapChannelsTest, OtherChannelsMapByIndexAndMissingInputsAreSilent) {
    EXPECT_EQ(mapped(2, 2), (std::vector{1.0F, 2.0F}));
    EXPECT_EQ(mapped(2, 4), (std::vector{1.0F, 2.0F, 0.0F, 0.0F}));
    EXPECT_EQ(mapped(3, 2), (std::vector{1.0F, 2.0F}));
    EXPECT_EQ(mapped(1, 1), std::vector{1.0F});
}

}  // namespace
}  // namespace orvalo::testing
