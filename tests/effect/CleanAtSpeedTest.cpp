#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include "tests/effect/EffectHost.h"

namespace {

using namespace orvalo::testing;

/// One second of a settled tone of full scale: each whole frequency is one component.
class CleanAtSpeedTest : public testing::Test {
  protected:
    CleanAtSpeedTest() {
        host.control("threshold") = -20.0F;
        host.control("knee") = 0.0F;
        host.control("attack") = 0.1F;
        host.control("release") = 45.0F;
        host.control("makeup") = 0.0F;
    }

    static constexpr std::size_t rate = 48000;

    void play(std::size_t frequency) {
        Stereo tone = steady(3 * rate, 0.0F);
        for (std::size_t i = 0; i < tone.left.size(); ++i) {
            const double turns = static_cast<double>(i * frequency % rate) / rate;
            tone.left[i] = tone.right[i] =
                static_cast<float>(std::sin(2.0 * std::numbers::pi * turns));
        }
        host.activate();
        output_ = host.render(tone).left;
        host.deactivate();
    }

    /// The amplitude of a component.
    double component(std::size_t frequency) const {
        std::complex<double> sum;
        for (std::size_t i = 0; i < rate; ++i) {
            const double turns = static_cast<double>(i * frequency % rate) / rate;
            sum += static_cast<double>(output_[2 * rate + i]) *
                   std::polar(1.0, -2.0 * std::numbers::pi * turns);
        }
        return 2.0 * std::abs(sum) / rate;
    }

    /// Total harmonic distortion in per cent.
    double distortion(std::size_t frequency) const {
        double power = 0.0;
        for (std::size_t i = 2; i <= 20; ++i) {
            power += std::pow(component(i * frequency), 2.0);
        }
        return 100.0 * std::sqrt(power) / component(frequency);
    }

    /// The highest folded component in dB: those of the harmonics above half the rate. The
    /// frequency has no factor in common with the rate, so they fall on places of their own.
    double alias(std::size_t frequency) const {
        double highest = 1e-12;
        for (std::size_t harmonic = 3; harmonic < 60; harmonic += 2) {
            const std::size_t place = harmonic * frequency % rate;
            if (harmonic * frequency > rate / 2) {
                highest = std::max(highest, component(std::min(place, rate - place)));
            }
        }
        return 20.0 * std::log10(highest / component(frequency));
    }

    EffectHost host;

  private:
    std::vector<float> output_;
};

TEST_F(CleanAtSpeedTest, AdaptiveSmoothingKeepsALowToneClean) {
    play(50);
    EXPECT_GT(distortion(50), 1.0);
    host.control("adaptive") = 1.0F;
    for (const std::size_t frequency : {20U, 50U, 100U, 1000U}) {
        play(frequency);
        EXPECT_LT(distortion(frequency), 0.01) << frequency;
    }
}

TEST_F(CleanAtSpeedTest, NothingFoldsBack) {
    play(4999);
    EXPECT_GT(alias(4999), -75.0);
    host.control("adaptive") = 1.0F;
    host.control("oversampling") = 1.0F;
    play(4999);
    EXPECT_LT(alias(4999), -100.0);
    host.control("oversampling") = 2.0F;
    play(4999);
    EXPECT_LT(alias(4999), -100.0);
}

TEST_F(CleanAtSpeedTest, OversamplingAloneLowersWhatFoldsBack) {
    host.control("oversampling") = 1.0F;
    play(4999);
    EXPECT_LT(alias(4999), -95.0);
    host.control("oversampling") = 2.0F;
    for (const std::size_t frequency : {2999U, 4999U, 6599U}) {
        play(frequency);
        EXPECT_LT(alias(frequency), -100.0) << frequency;
    }
}

}  // namespace
