#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/effect/EffectHost.h"

namespace {

using namespace orvalo::testing;

Stereo sine(double frequency, float amplitude, std::size_t frames) {
    Stereo signal = steady(frames, 0.0F);
    for (std::size_t i = 0; i < frames; ++i) {
        const double angle = 2.0 * std::numbers::pi * frequency * static_cast<double>(i) / 48000.0;
        signal.left[i] = signal.right[i] = amplitude * static_cast<float>(std::sin(angle));
    }
    return signal;
}

class SideChainTest : public testing::Test {
  protected:
    SideChainTest() {
        host.control("threshold") = -30.0F;
        host.control("makeup") = 0.0F;
        host.control("attack") = 1.0F;
    }

    /// Processes one block with a side-chain.
    Stereo run(const Stereo& input, const Stereo& side) {
        Stereo output = input;
        host.connectSideChain(side.left.data(), side.right.data());
        host.run(input.left.data(), input.right.data(), output.left.data(), output.right.data(),
                 static_cast<std::uint32_t>(input.left.size()));
        return output;
    }

    EffectHost host{{.hasSideChain = true}};
};

TEST_F(SideChainTest, ConnectedSideChainIsUsedOnlyWhenItIsChosen) {
    host.activate();
    EffectHost plain;
    plain.control("threshold") = -30.0F;
    plain.control("makeup") = 0.0F;
    plain.control("attack") = 1.0F;
    plain.activate();
    const auto input = noiseBursts(8192);
    EXPECT_EQ(run(input, steady(8192, 0.9F)), plain.render(input, {8192}));
}

TEST_F(SideChainTest, ExternalSideChainDecidesAlone) {
    host.control("sc_source") = 1.0F;
    host.activate();
    const auto input = steady(9600, 0.9F);
    EXPECT_EQ(run(input, steady(9600, 0.0F)), input);
    const auto ducked = run(steady(9600, 0.001F), steady(9600, 1.0F));
    // 30 dB above the threshold at 4:1: 22.5 dB.
    EXPECT_NEAR(20.0 * std::log10(ducked.left.back() / 0.001F), -22.5, 0.01);
    EXPECT_NEAR(host.control("gain_reduction"), 22.5F, 0.01F);
}

TEST_F(SideChainTest, UnconnectedExternalSideChainMeansInternal) {
    host.activate();
    const auto input = noiseBursts(8192);
    const auto internal = host.render(input);
    host.deactivate();
    host.control("sc_source") = 1.0F;
    host.activate();
    EXPECT_EQ(host.render(input), internal);
    host.deactivate();
    host.activate();
    const std::vector<float> left(8192);
    host.connectSideChain(left.data(), nullptr);
    EXPECT_EQ(host.render(input, {8192}), internal);
}

TEST_F(SideChainTest, InvalidSamplesInTheSideChainCountAsSilence) {
    host.control("sc_source") = 1.0F;
    host.activate();
    const auto input = steady(640, 0.5F);
    EXPECT_EQ(run(input, steady(640, std::nanf(""))), input);
}

TEST_F(SideChainTest, HighPassKeepsTheBassFromPumping) {
    // A bass drum's tone over a quiet one; the reduction is what pumps.
    const auto bass = sine(50.0, 0.7F, 48000);
    host.activate();
    host.render(bass);
    const float pumped = host.control("gain_reduction");
    EXPECT_GT(pumped, 19.0F);
    host.control("sc_highpass") = 400.0F;
    host.render(bass);
    host.render(bass);
    // 36.1 dB less at 50 Hz leaves nothing above the threshold.
    EXPECT_LT(host.control("gain_reduction"), 0.1F);
    const auto voice = sine(3000.0, 0.7F, 48000);
    host.render(voice);
    EXPECT_NEAR(host.control("gain_reduction"), pumped, 0.2F);
    host.control("sc_lowpass") = 300.0F;
    host.render(voice);
    host.render(voice);
    EXPECT_LT(host.control("gain_reduction"), 0.5F);
}

TEST_F(SideChainTest, ListenPlaysWhatTheDetectorHears) {
    host.control("sc_listen") = 1.0F;
    host.activate();
    const auto input = noiseBursts(8192);
    EXPECT_EQ(host.render(input), input);
    host.control("sc_source") = 1.0F;
    const auto side = noiseBursts(8192, 9);
    EXPECT_EQ(run(input, side), side);
    host.control("sc_listen") = 0.0F;
    const auto fading = run(steady(8192, 0.0F), steady(8192, 0.5F));
    EXPECT_GT(fading.left[480], 0.2F);
    EXPECT_EQ(fading.left[961], 0.0F);
}

TEST_F(SideChainTest, BypassIsExactWhileListening) {
    host.control("sc_listen") = 1.0F;
    host.control("enabled") = 0.0F;
    host.activate();
    const auto input = noiseBursts(8192);
    EXPECT_EQ(host.render(input), input);
}

TEST_F(SideChainTest, RmsMeasuresPower) {
    host.control("detector") = 1.0F;
    host.control("rms_window") = 100.0F;
    host.control("knee") = 0.0F;
    host.activate();
    host.render(sine(1000.0, 1.0F, 96000));
    // 3.01 dB less than the peak's 30 dB, at 4:1.
    EXPECT_NEAR(host.control("gain_reduction"), 0.75F * 26.99F, 0.05F);
}

}  // namespace
