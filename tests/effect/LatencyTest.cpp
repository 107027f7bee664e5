#include <gtest/gtest.h>

#include <cmath>

#include "tests/effect/EffectHost.h"
#include "tests/effect/TruePeakMeter.h"

namespace {

using namespace orvalo::testing;

/// The input as it leaves a pure delay.
Stereo delayed(const Stereo& input, std::size_t frames) {
    Stereo result = steady(input.left.size(), 0.0F);
    for (std::size_t i = frames; i < input.left.size(); ++i) {
        result.left[i] = input.left[i - frames];
        result.right[i] = input.right[i - frames];
    }
    return result;
}

TEST(Latency, IsNothingByDefault) {
    for (const double rate : {8000.0, 48000.0, 384000.0}) {
        EffectHost host({.rate = rate});
        host.control("latency") = -1.0F;
        host.activate();
        host.render(steady(64, 0.0F));
        EXPECT_EQ(host.control("latency"), 0.0F) << rate;
    }
}

TEST(Latency, IsReportedInFrames) {
    EffectHost host;
    host.activate();
    const auto reported = [&host] {
        host.render(steady(64, 0.0F));
        return host.control("latency");
    };
    host.control("look_ahead") = 10.0F;
    EXPECT_EQ(reported(), 480.0F);
    host.control("look_ahead") = 0.01F;
    EXPECT_EQ(reported(), 0.0F);
    host.control("look_ahead") = 2.5F;
    EXPECT_EQ(reported(), 120.0F);
    host.control("oversampling") = 1.0F;
    EXPECT_EQ(reported(), 168.0F);
    host.control("oversampling") = 2.0F;
    EXPECT_EQ(reported(), 168.0F);
    host.control("ceiling_on") = 1.0F;
    EXPECT_EQ(reported(), 249.0F);
    host.control("look_ahead") = 0.0F;
    host.control("oversampling") = 0.0F;
    EXPECT_EQ(reported(), 81.0F);
    host.control("ceiling_on") = 0.0F;
    EXPECT_EQ(reported(), 0.0F);
    host.run(nullptr, nullptr, nullptr, nullptr, 0);
    EXPECT_EQ(host.control("latency"), 0.0F);
}

TEST(Latency, BypassedSignalIsDelayedExactly) {
    for (const double rate : {8000.0, 48000.0, 384000.0}) {
        for (const float oversampling : {0.0F, 2.0F}) {
            EffectHost host({.rate = rate});
            host.control("enabled") = 0.0F;
            host.control("look_ahead") = 10.0F;
            host.control("ceiling_on") = 1.0F;
            host.control("oversampling") = oversampling;
            host.activate();
            const auto input = noiseBursts(20000);
            const auto output = host.render(input);
            EXPECT_EQ(output, delayed(input, static_cast<std::size_t>(host.control("latency"))))
                << rate << ' ' << oversampling;
        }
    }
}

TEST(Latency, UncompressedSignalIsDelayed) {
    EffectHost host;
    host.control("ratio") = 1.0F;
    host.control("makeup") = 0.0F;
    host.control("look_ahead") = 7.0F;
    host.control("ceiling_on") = 1.0F;
    host.control("ceiling") = 0.0F;
    host.activate();
    auto input = noiseBursts(20000);
    for (std::size_t i = 0; i < input.left.size(); ++i) {
        input.left[i] *= 0.4F;
        input.right[i] *= 0.4F;
    }
    EXPECT_EQ(host.render(input), delayed(input, 336 + 81));
}

/// Sets 19 dB of reduction at full scale, for times in milliseconds.
void setHardCurve(EffectHost& host, float attack, float lookAhead) {
    host.control("threshold") = -20.0F;
    host.control("ratio") = 20.0F;
    host.control("knee") = 0.0F;
    host.control("attack") = attack;
    host.control("release") = 5.0F;
    host.control("makeup") = 0.0F;
    host.control("look_ahead") = lookAhead;
}

TEST(LookAhead, GainHasFallenWhenTheStepArrives) {
    EffectHost host;
    setHardCurve(host, 1.0F, 10.0F);
    host.activate();
    Stereo input = steady(9600, 0.01F);
    for (std::size_t i = 4800; i < input.left.size(); ++i) {
        input.left[i] = input.right[i] = 1.0F;
    }
    const auto output = host.render(input);
    EXPECT_NEAR(output.left[4799], 0.01F, 1e-6F);
    // Ten time constants have passed.
    for (std::size_t i = 4800 + 480; i < output.left.size(); ++i) {
        ASSERT_NEAR(20.0 * std::log10(output.left[i]), -19.0, 0.01) << i;
    }
}

TEST(LookAhead, ShortPeakIsHeldUntilItHasPassed) {
    EffectHost host;
    setHardCurve(host, 0.5F, 8.0F);
    host.activate();
    Stereo input = steady(9600, 0.0F);
    input.left[4800] = 1.0F;
    const auto output = host.render(input);
    EXPECT_NEAR(20.0 * std::log10(output.left[4800 + 384]), -19.0, 0.01);
}

TEST(LookAhead, NotesDuckTheFrameWithWhichTheyArrive) {
    for (const float oversampling : {0.0F, 1.0F}) {
        EffectHost host;
        host.control("ratio") = 1.0F;
        host.control("makeup") = 0.0F;
        host.control("duck_depth") = 60.0F;
        host.control("look_ahead") = 5.0F;
        host.control("oversampling") = oversampling;
        host.activate();
        const auto output = host.render(steady(9600, 0.5F), {64}, {{4000, {0x90, 60, 127}}});
        const auto latency = static_cast<std::size_t>(host.control("latency"));
        EXPECT_NEAR(output.left[4000 + latency - 40], 0.5F, 1e-4F);
        EXPECT_LT(output.left[4000 + latency + 40], 0.4F);
        if (oversampling == 0.0F) {
            EXPECT_EQ(output.left[4000 + latency - 1], 0.5F);
            EXPECT_LT(output.left[4000 + latency], 0.5F);
        }
    }
}

TEST(Ceiling, HoldsForWhateverTheCompressorAdds) {
    for (const double rate : {8000.0, 44100.0, 48000.0, 96000.0, 384000.0}) {
        EffectHost host({.rate = rate});
        host.control("threshold") = -40.0F;
        host.control("attack") = 30.0F;
        host.control("makeup") = 24.0F;
        host.control("output") = 12.0F;
        host.control("ceiling_on") = 1.0F;
        host.control("ceiling") = -6.0F;
        host.activate();
        const auto output = host.render(noiseBursts(48000));
        EXPECT_LT(truePeak(output.left), -5.9) << rate;
        EXPECT_LT(truePeak(output.right), -5.9) << rate;
    }
}

}  // namespace
