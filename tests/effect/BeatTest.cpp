#include <gtest/gtest.h>

#include <cmath>

#include "tests/effect/EffectHost.h"
#include "tests/effect/EffectWorld.h"

namespace {

using namespace orvalo::testing;

/// With ratio 1 and no make-up, only beats change the signal.
class BeatTest : public testing::Test {
  protected:
    BeatTest() {
        host.control("ratio") = 1.0F;
        host.control("makeup") = 0.0F;
        host.control("duck_depth") = 20.0F;
        host.control("duck_release") = 10.0F;
        host.control("beat") = 1.0F;
    }

    /// Runs one block with the events in the sequence, and returns the left channel.
    std::vector<float> run(std::uint32_t frames) {
        auto signal = steady(frames, 0.5F);
        host.run(signal.left.data(), signal.right.data(), signal.left.data(), signal.right.data(),
                 frames);
        host.midiIn().clear();
        return signal.left;
    }

    /// The first frame that is quieter than its predecessor, from `start` on.
    static std::size_t fallFrom(const std::vector<float>& sound, std::size_t start) {
        for (std::size_t i = start; i < sound.size(); ++i) {
            if (sound[i] < (i == 0 ? 0.5F : sound[i - 1])) {
                return i;
            }
        }
        return sound.size();
    }

    EffectHost host;
};

TEST_F(BeatTest, DucksLikeANoteOfFullVelocityFromTheFirstFrame) {
    host.activate();
    const auto sound = host.render(steady(48000, 0.5F), {333});
    EXPECT_EQ(fallFrom(sound.left, 0), 0U);
    for (const std::size_t i : {0UL, 1UL, 100UL, 5999UL}) {
        const double decibels = 20.0 * (1.0 - std::exp(-static_cast<double>(i + 1) / 144.0));
        EXPECT_NEAR(sound.left[i], 0.5 * std::pow(10.0, -decibels / 20.0), 2e-6) << i;
    }
    EXPECT_GT(sound.left[6000], sound.left[5999]);
    EXPECT_EQ(sound.left[23999], 0.5F);
    EXPECT_EQ(fallFrom(sound.left, 20000), 24000U);
    EXPECT_EQ(host.control("midi_in_count"), 0.0F);
}

TEST_F(BeatTest, FollowsThePositionOfTheHostFromItsExactFrame) {
    host.activate();
    // 90 beats per minute of eighth notes are 45 quarter notes: 64000 frames each.
    host.midiIn().appendPosition(
        1000, {{"beat", 3.5}, {"beatUnit", 8.0}, {"beatsPerMinute", 90.0}, {"speed", 1.0}});
    // Beat 3.5 of eighth notes is 0.25 quarter notes before the next grid point.
    auto sound = run(30000);
    EXPECT_EQ(fallFrom(sound, 1000), 1000U + 16000U);
    host.midiIn().appendPosition(0, {{"speed", 0.0}});
    EXPECT_EQ(fallFrom(run(200000), 1), 200000U);
}

TEST_F(BeatTest, TakesBarsAndBeatsInBars) {
    host.activate();
    host.midiIn().appendPosition(0, {{"bar", 2.0},
                                     {"barBeat", 2.75},
                                     {"beatsPerBar", 3.0},
                                     {"beatUnit", 4.0},
                                     {"beatsPerMinute", 120.0},
                                     {"speed", 1.0}});
    EXPECT_EQ(fallFrom(run(20000), 0), 6000U);
}

TEST_F(BeatTest, PositionWithoutTempoLeavesTheOwnTempo) {
    host.control("beat_tempo") = 60.0F;
    host.activate();
    host.midiIn().appendPosition(0, {{"frame", 0.0}, {"speed", 0.0}});
    const auto sound = run(60000);
    EXPECT_EQ(fallFrom(sound, 0), 0U);
    EXPECT_EQ(fallFrom(sound, 40000), 48000U);
}

TEST_F(BeatTest, BlockLengthsChangeNothing) {
    std::vector<Stereo> sounds;
    for (const std::uint32_t length : {1U, 64U, 1000U, 60000U}) {
        EffectHost one;
        one.control("beat") = 1.0F;
        one.control("beat_division") = 11.0F;
        one.control("beat_offset") = -13.0F;
        one.control("beat_tempo") = 137.0F;
        one.activate();
        sounds.push_back(one.render(noiseBursts(60000), {length}));
        EXPECT_EQ(sounds.back(), sounds.front()) << length;
    }
}

TEST_F(BeatTest, NonsenseInAPositionIsIgnored) {
    host.activate();
    const double nan = std::nan("");
    for (const double value : {nan, 1e300, -1e300, 0.0, -1.0, 1e-300}) {
        host.midiIn().appendPosition(0, {{"beat", value},
                                         {"bar", value},
                                         {"barBeat", value},
                                         {"beatsPerBar", value},
                                         {"beatUnit", value},
                                         {"beatsPerMinute", value},
                                         {"speed", value}});
        // An object that states more than it has.
        host.midiIn().appendPosition(1, {{"beat", 1.0}});
        for (const float sample : run(512)) {
            ASSERT_TRUE(std::isfinite(sample)) << value;
        }
    }
}

TEST(NotePump, PumpsAtOnce) {
    EffectHost host;
    const auto preset = EffectWorld::shared().presets().at("Note Pump");
    for (const auto& [symbol, value] : preset) {
        host.control(symbol) = value;
    }
    host.control("ratio") = 1.0F;
    host.control("makeup") = 0.0F;
    host.activate();
    const auto sound = host.render(steady(48000, 0.5F));
    // At 124 quarter notes per minute: every 23226 frames.
    EXPECT_GT(sound.left[23225], 0.6F);
    EXPECT_LT(sound.left[2400], 0.25F * sound.left[23225]);
    EXPECT_LT(sound.left[23226 + 1200], 0.25F * sound.left[23225]);
}

}  // namespace
