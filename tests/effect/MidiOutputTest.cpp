#include <gtest/gtest.h>

#include <cmath>

#include "tests/effect/EffectHost.h"

namespace {

using namespace orvalo::testing;

using Messages = std::vector<MidiMessage>;

/// The smoothed gain reduction per frame for a signal that needs `asked` dB and then stops.
std::vector<double> expectedReduction(double asked, std::size_t on, std::size_t frames,
                                      double attack, double release) {
    const double attackKeep = std::exp(-1.0 / (attack * 48000.0));
    const double releaseKeep = std::exp(-1.0 / (release * 48000.0));
    std::vector<double> reduction(frames);
    double held = 0.0;
    double smooth = 0.0;
    for (std::size_t i = 0; i < frames; ++i) {
        held = i < on ? asked : held * releaseKeep;
        smooth = attackKeep * smooth + (1.0 - attackKeep) * held;
        reduction[i] = smooth;
    }
    return reduction;
}

class MidiOutputTest : public testing::Test {
  protected:
    MidiOutputTest() {
        host.control("threshold") = -20.0F;
        host.control("ratio") = 20.0F;
        host.control("knee") = 0.0F;
        host.control("attack") = 10.0F;
        host.control("release") = 50.0F;
        host.control("trigger_level") = 8.0F;
        host.control("trigger_note") = 38.0F;
        host.control("midi_channel") = 10.0F;
        host.activate();
    }

    EffectHost host;
};

TEST_F(MidiOutputTest, SendsAPairAtTheFramesOfTheCurve) {
    auto input = steady(24000, 1.0F);
    std::fill(input.left.begin() + 9600, input.left.end(), 0.0F);
    std::fill(input.right.begin() + 9600, input.right.end(), 0.0F);
    host.render(input, {480});

    const auto reduction = expectedReduction(19.0, 9600, 24000, 0.010, 0.050);
    std::int64_t on = 0;
    while (reduction[static_cast<std::size_t>(on)] < 8.0) {
        ++on;
    }
    std::int64_t off = on;
    while (reduction[static_cast<std::size_t>(off)] >= 6.0) {
        ++off;
    }
    ASSERT_GT(on, 100);
    ASSERT_GT(off, 9600);
    // 40 plus 5 per dB for 11 dB above the level.
    EXPECT_EQ(host.sent(), (Messages{{on, {0x99, 38, 95}}, {off, {0x89, 38, 64}}}));
}

TEST_F(MidiOutputTest, ManyBurstsGiveAlternatingPairs) {
    host.render(noiseBursts(480000), {333});
    host.render(steady(48000, 0.0F));
    const auto& sent = host.sent();
    ASSERT_GT(sent.size(), 40U);
    ASSERT_EQ(sent.size() % 2, 0U);
    for (std::size_t i = 0; i < sent.size(); i += 2) {
        ASSERT_EQ(sent[i].bytes.size(), 3U);
        ASSERT_EQ(sent[i + 1].bytes.size(), 3U);
        EXPECT_EQ(sent[i].bytes[0], 0x99);
        EXPECT_EQ(sent[i + 1].bytes[0], 0x89);
        EXPECT_EQ(sent[i].bytes[1], 38);
        EXPECT_EQ(sent[i + 1].bytes[1], 38);
        EXPECT_GE(sent[i].bytes[2], 40);
        EXPECT_GE(sent[i + 1].frame - sent[i].frame, 960);
    }
}

TEST_F(MidiOutputTest, AllChannelsSendsOnTheFirst) {
    host.control("midi_channel") = 0.0F;
    host.render(steady(9600, 1.0F));
    ASSERT_EQ(host.sent().size(), 1U);
    EXPECT_EQ(host.sent()[0].bytes[0], 0x90);
}

TEST_F(MidiOutputTest, ChangedNoteEndsWithItsOwnNumber) {
    host.render(steady(9600, 1.0F));
    host.control("trigger_note") = 60.0F;
    host.control("midi_channel") = 1.0F;
    host.render(steady(9600, 1.0F));
    ASSERT_EQ(host.sent().size(), 3U);
    EXPECT_EQ(host.sent()[1], (MidiMessage{9600, {0x89, 38, 64}}));
    EXPECT_EQ(host.sent()[2], (MidiMessage{9600, {0x90, 60, 95}}));
}

TEST_F(MidiOutputTest, NoteSoundingAtDeactivationEndsAtTheNextRun) {
    // Shorter than 20 ms: only the reset ends it at once.
    host.render(steady(500, 1.0F));
    host.deactivate();
    host.activate();
    host.render(steady(10, 0.0F));
    ASSERT_EQ(host.sent().size(), 2U);
    EXPECT_EQ(host.sent()[1], (MidiMessage{500, {0x89, 38, 64}}));
}

TEST_F(MidiOutputTest, EmptyBlockSendsAndLosesNothing) {
    host.render(steady(9600, 1.0F));
    host.control("trigger_note") = 60.0F;
    host.run(nullptr, nullptr, nullptr, nullptr, 0);
    EXPECT_EQ(host.midiOut().messages(0), Messages{});
    host.render(steady(10, 1.0F));
    ASSERT_EQ(host.sent().size(), 3U);
    EXPECT_EQ(host.sent()[1].bytes, (std::vector<std::uint8_t>{0x89, 38, 64}));
}

TEST_F(MidiOutputTest, ReceivedNotesDoNotChangeSentMessages) {
    host.render(noiseBursts(96000), {512});
    EffectHost ducked;
    for (const char* symbol : {"threshold", "ratio", "knee", "attack", "release", "trigger_level",
                               "trigger_note", "midi_channel"}) {
        ducked.control(symbol) = host.control(symbol);
    }
    ducked.activate();
    ducked.render(noiseBursts(96000), {512}, {{100, {0x99, 60, 127}}, {50000, {0x89, 60, 0}}});
    EXPECT_EQ(ducked.sent(), host.sent());
}

TEST(MidiOutput, SmallBufferKeepsPairsWhole) {
    EffectHost host({.midiRoom = 16 + 24});  // one message
    host.control("trigger_level") = 1.0F;
    host.control("release") = 5.0F;
    host.activate();
    host.render(noiseBursts(480000), {20000});
    host.render(steady(96000, 0.0F), {1000});
    const auto& sent = host.sent();
    ASSERT_GT(sent.size(), 10U);
    ASSERT_EQ(sent.size() % 2, 0U);
    for (std::size_t i = 0; i < sent.size(); ++i) {
        EXPECT_EQ(sent[i].bytes[0], i % 2 == 0 ? 0x90 : 0x80);
    }
}

TEST(MidiOutput, FullBufferIsUnchanged) {
    EffectHost host({.midiRoom = 16});
    host.activate();
    host.render(noiseBursts(48000));
    EXPECT_EQ(host.sent(), Messages{});
}

}  // namespace
