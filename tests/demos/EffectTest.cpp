#include <ebur128.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "tests/demos/DecodedFile.h"
#include "tests/effect/EffectHost.h"
#include "tests/effect/EffectWorld.h"
#include "tests/effect/TruePeakMeter.h"

namespace {

using namespace orvalo::testing;

constexpr int pieceCount = 80;
constexpr int rate = 48000;

struct MeterFree {
    void operator()(ebur128_state* state) const { ebur128_destroy(&state); }
};

/// Loudness and true peak, by libebur128.
class Meter {
  public:
    explicit Meter(int mode) : state_(ebur128_init(2, rate, mode)) {}

    void add(const Stereo& sound) {
        std::vector<float> interleaved;
        interleaved.reserve(2 * sound.left.size());
        for (std::size_t i = 0; i < sound.left.size(); ++i) {
            interleaved.push_back(sound.left[i]);
            interleaved.push_back(sound.right[i]);
        }
        ASSERT_EQ(ebur128_add_frames_float(state_.get(), interleaved.data(), sound.left.size()),
                  EBUR128_SUCCESS);
    }

    /// In LUFS.
    double loudness() const {
        double result = 0.0;
        EXPECT_EQ(ebur128_loudness_global(state_.get(), &result), EBUR128_SUCCESS);
        return result;
    }

    /// In dBTP.
    double truePeak() const {
        double highest = 0.0;
        for (const unsigned channel : {0U, 1U}) {
            double peak = 0.0;
            EXPECT_EQ(ebur128_true_peak(state_.get(), channel, &peak), EBUR128_SUCCESS);
            highest = std::max(highest, peak);
        }
        return 20.0 * std::log10(highest);
    }

  private:
    std::unique_ptr<ebur128_state, MeterFree> state_;
};

std::vector<Stereo> music() {
    std::vector<Stereo> result;
    for (int piece = 1; piece <= pieceCount; ++piece) {
        auto file = decode(DEMO_FOLDER "/" + std::to_string(piece) + ".m4a");
        EXPECT_EQ(file.rate, rate);
        result.push_back({std::move(file.left), std::move(file.right)});
    }
    return result;
}

float samplePeak(const Stereo& sound) {
    float peak = 0.0F;
    for (const auto* side : {&sound.left, &sound.right}) {
        for (const float sample : *side) {
            peak = std::max(peak, std::abs(sample));
        }
    }
    return peak;
}

// A listener compares presets with the bypassed effect: the louder one would seem the better one.
TEST(PresetLoudness, IsThatOfTheBypassedEffectOnTheDemonstrationMusic) {
    // Interpolation adds less than 3 dB to the samples of this music; libebur128's is slow.
    constexpr float couldPeak = 0.63F;
    const auto pieces = music();
    Meter bypassed(EBUR128_MODE_I);
    for (const auto& piece : pieces) {
        bypassed.add(piece);
    }
    for (const auto& [label, values] : EffectWorld::shared().presets()) {
        Meter heard(EBUR128_MODE_I);
        double truePeak = -HUGE_VAL;
        for (const auto& piece : pieces) {
            EffectHost host;
            for (const auto& [symbol, value] : values) {
                host.control(symbol) = value;
            }
            host.activate();
            const auto output = host.render(piece);
            heard.add(output);
            if (samplePeak(output) > couldPeak) {
                Meter peak(EBUR128_MODE_TRUE_PEAK);
                peak.add(output);
                truePeak = std::max(truePeak, peak.truePeak());
            }
        }
        EXPECT_NEAR(heard.loudness(), bypassed.loudness(), 1.0) << label;
        EXPECT_LE(truePeak, -1.0) << label;
    }
}

// By the interpolation of BS.1770-4. That of libebur128 is a longer filter and finds up to 0.16 dB.
TEST(Ceiling, HoldsOnTheDemonstrationMusic) {
    constexpr float ceiling = -3.0F;
    for (const auto& piece : music()) {
        EffectHost host;
        host.control("makeup") = 18.0F;
        host.control("ceiling_on") = 1.0F;
        host.control("ceiling") = ceiling;
        host.activate();
        const auto output = host.render(piece);
        EXPECT_LE(truePeak(output.left), ceiling + 0.1);
        EXPECT_LE(truePeak(output.right), ceiling + 0.1);
    }
}

}  // namespace
