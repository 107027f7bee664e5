#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <numbers>
#include <stdexcept>

#include "demos/sound/LoopLimiter.h"
#include "demos/sound/Loudness.h"
#include "demos/sound/Mix.h"
#include "demos/sound/Renderer.h"
#include "demos/sound/StereoSound.h"

using orvalo::StereoSound;

// libinstpatch, with which newer versions of FluidSynth read SoundFonts, leaks its types and an
// error. Only whole stacks tell these allocations from GLib's others.
// NOLINTBEGIN(bugprone-reserved-identifier): the names that the sanitizer requires
extern "C" const char* __asan_default_options() {
    return "fast_unwind_on_malloc=0";
}
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libinstpatch\n";
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

constexpr int rate = 48000;
constexpr std::size_t second = rate;

StereoSound sine(std::size_t frames, double hertz, double amplitude) {
    StereoSound sound;
    sound.resize(frames);
    for (std::size_t frame = 0; frame < frames; ++frame) {
        const double phase = 2 * std::numbers::pi * hertz * static_cast<double>(frame) / rate;
        sound.left[frame] = static_cast<float>(amplitude * std::sin(phase));
        sound.right[frame] = sound.left[frame];
    }
    return sound;
}

TEST(Fold, AddsTheTailToTheStartRepeatedly) {
    StereoSound sound;
    sound.left = {1, 2, 3, 10, 20, 30, 100};
    sound.right = {0, 0, 0, 1, 0, 0, 5};
    const StereoSound loop = orvalo::fold(sound, 3);
    EXPECT_EQ(loop.left, (std::vector<float>{111, 22, 33}));
    EXPECT_EQ(loop.right, (std::vector<float>{6, 0, 0}));
}

TEST(Fold, FillsALongerLoopWithSilence) {
    StereoSound sound;
    sound.left = {1};
    sound.right = {2};
    EXPECT_EQ(orvalo::fold(sound, 3).left, (std::vector<float>{1, 0, 0}));
}

TEST(LoopLimiter, KeepsALoopBelowTheCeiling) {
    StereoSound loop = sine(second, 440, 0.5);
    const StereoSound before = loop;
    orvalo::limit(loop, 0.6F);
    EXPECT_EQ(loop.left, before.left);
}

TEST(LoopLimiter, WrapsAtTheSeam) {
    StereoSound loop = sine(second, 480, 0.3);
    loop.left[2] = 1.0F;
    orvalo::limit(loop, 0.5F);
    EXPECT_LE(loop.peak(), 0.5001F);
    // The frames at the loop's end, just before the peak of the next pass, are lowered; distant
    // ones are not.
    const StereoSound plain = sine(second, 480, 0.3);
    EXPECT_NEAR(loop.right[second - 25] / plain.right[second - 25], 0.5, 0.05);
    EXPECT_EQ(loop.right[second / 2 + 7], plain.right[second / 2 + 7]);
    // Both sides have the same gain.
    EXPECT_FLOAT_EQ(loop.left[second - 25], loop.right[second - 25]);
}

TEST(LoopLimiter, LimitsPeaksBetweenTheSamples) {
    // A quarter of the sample rate at 45 degrees: the samples are at 0.707 of the peak.
    StereoSound loop;
    loop.resize(second);
    for (std::size_t frame = 0; frame < loop.frames(); ++frame) {
        const double phase = std::numbers::pi * (static_cast<double>(frame) / 2.0 + 0.25);
        loop.left[frame] = loop.right[frame] = static_cast<float>(std::sin(phase));
    }
    orvalo::limit(loop, 0.8F);
    EXPECT_NEAR(loop.peak(), 0.8 * std::numbers::sqrt2 / 2, 0.02);
}

TEST(Loudness, MeasuresTheReferenceTone) {
    // EBU Tech 3341: 1 kHz in both channels at -23 dBFS reads -23 LUFS.
    const double amplitude = std::pow(10.0, -23.0 / 20.0);
    EXPECT_NEAR(orvalo::loudness(sine(4 * second, 1000, amplitude), rate), -23.0, 0.1);
}

TEST(Loudness, BringsALoopToItsTargetBelowTheCeiling) {
    StereoSound loop = sine(4 * second, 997, 0.01);
    for (std::size_t frame = 0; frame < loop.frames(); frame += second / 2) {
        loop.left[frame] = 0.5F;
    }
    orvalo::normalise(loop, rate, -20.0, 0.5F);
    EXPECT_NEAR(orvalo::loudness(loop, rate), -20.0, 0.1);
    EXPECT_LE(loop.peak(), 0.5001F);
}

TEST(Loudness, ThrowsForSilenceAndForUnreachableLoudness) {
    StereoSound silence;
    silence.resize(second);
    EXPECT_THROW(orvalo::normalise(silence, rate, -20.0, 0.7F), std::runtime_error);
    StereoSound loop = sine(4 * second, 1000, 0.1);
    EXPECT_THROW(orvalo::normalise(loop, rate, -6.0, 0.1F), std::runtime_error);
}

TEST(Mix, InvertsASideThatWouldCancelTheOther) {
    StereoSound sound = sine(1000, 440, 0.5);
    StereoSound opposite = sound;
    for (float& sample : opposite.right) {
        sample = -sample;
    }
    orvalo::matchSides(opposite);
    EXPECT_EQ(opposite.right, sound.right);
    orvalo::matchSides(sound);
    EXPECT_EQ(sound.right, opposite.right);
}

TEST(Renderer, ErrorNamesAnUnreadableSoundFont) {
    orvalo::Score score;
    score.loopTicks = 960;
    score.parts = {{0, false, -30.0, 64, 0, 0}};
    score.notes = {{0, 0, 960, 60, 100}};
    try {
        orvalo::render(score, 0, "/nowhere/no.sf2", rate);
        FAIL() << "a SoundFont that is not there was read";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "cannot read the SoundFont /nowhere/no.sf2");
    }
}

}  // namespace
