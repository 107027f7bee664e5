#include <gtest/gtest.h>

#include <cmath>

#include "tests/effect/EffectHost.h"

namespace {

using namespace orvalo::testing;

/// 10 dB of reduction at full scale, 5 dB at -10 dB, both exact.
class StereoTest : public testing::Test {
  protected:
    StereoTest() {
        host.control("threshold") = -20.0F;
        host.control("ratio") = 2.0F;
        host.control("knee") = 0.0F;
        host.control("attack") = 0.1F;
        host.control("release") = 5.0F;
        host.control("makeup") = 0.0F;
    }

    /// The settled gains of both channels in dB, for constant levels.
    std::pair<double, double> gains(float left, float right) {
        host.deactivate();
        host.activate();
        Stereo input{.left = std::vector<float>(9600, left),
                     .right = std::vector<float>(9600, right)};
        const auto output = host.render(input);
        return {20.0 * std::log10(std::abs(output.left.back() / left)),
                20.0 * std::log10(std::abs(output.right.back() / right))};
    }

    EffectHost host;
    const float quiet = std::pow(10.0F, -0.5F);
};

TEST_F(StereoTest, LinkSharesTheReductionOfTheLouderChannel) {
    for (const auto& [link, expected] : std::initializer_list<std::pair<float, double>>{
             {100.0F, -10.0}, {50.0F, -7.5}, {20.0F, -6.0}, {0.0F, -5.0}}) {
        host.control("link") = link;
        const auto [left, right] = gains(1.0F, quiet);
        EXPECT_NEAR(left, -10.0, 1e-3) << link;
        EXPECT_NEAR(right, expected, 1e-3) << link;
        const auto [other, louder] = gains(-quiet, 1.0F);
        EXPECT_NEAR(other, expected, 1e-3) << link;
        EXPECT_NEAR(louder, -10.0, 1e-3) << link;
        EXPECT_NEAR(host.control("gain_reduction"), 10.0F, 1e-3F);
    }
}

TEST_F(StereoTest, MidAndSideAreCompressedByTheirAmounts) {
    host.control("stereo_mode") = 1.0F;
    host.control("link") = 0.0F;
    // Equal channels are mid alone, opposite ones are side alone.
    EXPECT_NEAR(gains(1.0F, 1.0F).first, -10.0, 1e-3);
    EXPECT_NEAR(gains(1.0F, -1.0F).second, -10.0, 1e-3);
    host.control("side_amount") = 30.0F;
    EXPECT_NEAR(gains(1.0F, 1.0F).first, -10.0, 1e-3);
    EXPECT_NEAR(gains(1.0F, -1.0F).first, -3.0, 1e-3);
    host.control("mid_amount") = 0.0F;
    EXPECT_NEAR(gains(1.0F, 1.0F).first, 0.0, 1e-3);
    // Mid 0.5 and side 0.5 for a single channel: the side alone is compressed.
    host.control("side_amount") = 100.0F;
    const double side = -0.5 * (20.0 * std::log10(0.5) + 20.0);
    const double expected = 0.5 + 0.5 * std::pow(10.0, side / 20.0);
    EXPECT_NEAR(gains(1.0F, 1e-9F).first, 20.0 * std::log10(expected), 1e-3);
}

TEST_F(StereoTest, AmountsAreForMidAndSideOnly) {
    host.control("mid_amount") = 0.0F;
    host.control("side_amount") = 0.0F;
    EXPECT_NEAR(gains(1.0F, quiet).first, -10.0, 1e-3);
    EXPECT_NEAR(gains(1.0F, quiet).second, -10.0, 1e-3);
}

TEST_F(StereoTest, LinkingAgainMakesNoStep) {
    host.control("release") = 200.0F;
    host.control("link") = 0.0F;
    host.activate();
    Stereo input{.left = std::vector<float>(48000, 1.0F), .right = std::vector<float>(48000, 0.1F)};
    host.render(input);
    host.control("link") = 100.0F;
    const auto output = host.render(input);
    float last = 0.1F;
    for (const float now : output.right) {
        ASSERT_LT(std::abs(now - last), 0.01F * last);
        last = now;
    }
    EXPECT_NEAR(output.right.back(), 0.1F * output.left.back(), 1e-5F);
}

}  // namespace
