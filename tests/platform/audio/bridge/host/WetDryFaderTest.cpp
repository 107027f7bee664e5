#include "platform/audio/bridge/host/WetDryFader.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {

using namespace orvalo;

/// A block whose samples are all equal.
struct Level {
    Level(std::uint32_t channelCount, std::uint32_t frames, float level)
        : samples(channelCount, std::vector<float>(frames, level)) {
        for (auto& channel : samples) {
            pointers.push_back(channel.data());
        }
    }
    AudioBlock block() const {
        return {pointers.data(), static_cast<std::uint32_t>(samples.size()),
                static_cast<std::uint32_t>(samples.front().size())};
    }

    std::vector<std::vector<float>> samples;
    std::vector<float*> pointers;
};

std::vector<float> line(float from, float to, std::size_t steps, std::size_t frames) {
    std::vector<float> result(frames, to);
    for (std::size_t frame = 0; frame < steps; ++frame) {
        result[frame] = from + (to - from) * static_cast<float>(frame) / static_cast<float>(steps);
    }
    return result;
}

TEST(WetDryFader, TheFirstBlockIsNotFaded) {
    const Level dry(1, 128, 1.0F);
    const Level wet(1, 128, 0.25F);
    Level output(1, 128, -7.0F);
    WetDryFader().writeWet(dry.block(), wet.block(), output.block());
    EXPECT_EQ(output.samples[0], std::vector<float>(128, 0.25F));
    WetDryFader().writeDry(dry.block(), output.block());
    EXPECT_EQ(output.samples[0], std::vector<float>(128, 1.0F));
}

TEST(WetDryFader, TheDifferenceToTheDrySignalFadesOutIn64Frames) {
    const Level dry(1, 128, 1.0F);
    const Level wet(1, 128, 0.25F);
    Level output(1, 128, -7.0F);
    WetDryFader fader;
    fader.writeWet(dry.block(), wet.block(), output.block());
    fader.writeDry(dry.block(), output.block());
    EXPECT_EQ(output.samples[0], line(0.25F, 1.0F, 64, 128));
    fader.writeDry(dry.block(), output.block());
    EXPECT_EQ(output.samples[0], std::vector<float>(128, 1.0F));
}

TEST(WetDryFader, TheFadeAddsToTheDrySignal) {
    Level dry(1, 4, 0.0F);
    dry.samples[0] = {0.5F, -0.5F, 0.25F, 1.0F};
    const Level wet(1, 4, 1.0F);
    Level output(1, 4, -7.0F);
    WetDryFader fader;
    fader.writeWet(dry.block(), wet.block(), output.block());
    fader.writeDry(dry.block(), output.block());
    EXPECT_EQ(output.samples[0], (std::vector<float>{1.0F, -0.125F, 0.5F, 1.125F}));
}

TEST(WetDryFader, FromDryToWetCrossfades) {
    const Level dry(1, 128, 1.0F);
    const Level wet(1, 128, 0.25F);
    Level output(1, 128, -7.0F);
    WetDryFader fader;
    fader.writeDry(dry.block(), output.block());
    fader.writeWet(dry.block(), wet.block(), output.block());
    EXPECT_EQ(output.samples[0], line(1.0F, 0.25F, 64, 128));
    fader.writeWet(dry.block(), wet.block(), output.block());
    EXPECT_EQ(output.samples[0], std::vector<float>(128, 0.25F));
}

TEST(WetDryFader, AFadeIsNoLongerThanTheBlock) {
    const Level dry(1, 4, 1.0F);
    const Level wet(1, 4, 0.0F);
    Level output(1, 4, -7.0F);
    WetDryFader fader;
    fader.writeWet(dry.block(), wet.block(), output.block());
    fader.writeDry(dry.block(), output.block());
    EXPECT_EQ(output.samples[0], (std::vector<float>{0.0F, 0.25F, 0.5F, 0.75F}));
    fader.writeWet(dry.block(), wet.block(), output.block());
    EXPECT_EQ(output.samples[0], (std::vector<float>{1.0F, 0.75F, 0.5F, 0.25F}));
}

TEST(WetDryFader, FadesEachChannelByItself) {
    const Level dry(1, 8, 1.0F);
    Level wet(3, 8, 0.0F);
    wet.samples[1].assign(8, 2.0F);
    wet.samples[2].assign(8, 1.0F);
    Level output(3, 8, -7.0F);
    WetDryFader fader;
    fader.writeWet(dry.block(), wet.block(), output.block());
    fader.writeDry(dry.block(), output.block());
    EXPECT_EQ(output.samples[0], line(0.0F, 1.0F, 8, 8));
    EXPECT_EQ(output.samples[1], line(2.0F, 1.0F, 8, 8));
    EXPECT_EQ(output.samples[2], std::vector<float>(8, 1.0F));
}

TEST(WetDryFader, AnInstrumentFadesToSilence) {
    const AudioBlock nothing{nullptr, 0, 4};
    const Level wet(2, 4, 1.0F);
    Level output(2, 4, -7.0F);
    WetDryFader fader;
    fader.writeWet(nothing, wet.block(), output.block());
    fader.writeDry(nothing, output.block());
    EXPECT_EQ(output.samples[1], (std::vector<float>{1.0F, 0.75F, 0.5F, 0.25F}));
    fader.writeDry(nothing, output.block());
    EXPECT_EQ(output.samples[0], std::vector<float>(4, 0.0F));
}

TEST(WetDryFader, NaNAndInfinityDoNotReachTheDrySignal) {
    const Level dry(1, 128, 1.0F);
    Level output(1, 128, -7.0F);
    for (const float odd :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        const Level wet(1, 128, odd);
        WetDryFader fader;
        fader.writeWet(dry.block(), wet.block(), output.block());
        fader.writeDry(dry.block(), output.block());
        EXPECT_EQ(output.samples[0], std::vector<float>(128, 1.0F));
    }
}

}  // namespace
