#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "tests/effect/EffectHost.h"

namespace {

using namespace orvalo::testing;

/// With ratio 1 and no make-up, only notes change the signal.
class NoteInputTest : public testing::Test {
  protected:
    NoteInputTest() {
        host.control("ratio") = 1.0F;
        host.control("makeup") = 0.0F;
        host.control("duck_depth") = 20.0F;
        host.activate();
    }

    EffectHost host;
};

TEST_F(NoteInputTest, DucksFromTheExactFrameByTheVelocity) {
    const auto output = host.render(steady(48000, 0.5F), {700}, {{12345, {0x90, 60, 127}}});
    for (std::size_t i = 0; i < 12345; ++i) {
        ASSERT_EQ(output.left[i], 0.5F) << i;
    }
    for (const std::size_t i : {12345UL, 12346UL, 12400UL, 47999UL}) {
        const double time = static_cast<double>(i - 12345 + 1) / 48000.0;
        const double decibels = 20.0 * (1.0 - std::exp(-time / 0.003));
        EXPECT_NEAR(output.left[i], 0.5 * std::pow(10.0, -decibels / 20.0), 2e-6) << i;
        EXPECT_EQ(output.left[i], output.right[i]);
    }
    EXPECT_NEAR(host.control("ducking"), 20.0F, 1e-3F);
    const auto released = host.render(steady(192000, 0.5F), {4096}, {{0, {0x80, 60, 0}}});
    EXPECT_EQ(released.left.back(), 0.5F);
}

TEST_F(NoteInputTest, AllNotesOffReleasesTheNotes) {
    host.render(steady(9600, 0.5F), {512}, {{0, {0x91, 60, 127}}, {10, {0x91, 64, 127}}});
    const auto output = host.render(steady(192000, 0.5F), {512}, {{0, {0xB1, 123, 0}}});
    EXPECT_EQ(output.left.back(), 0.5F);
}

TEST_F(NoteInputTest, IgnoresOtherChannels) {
    host.control("midi_channel") = 4.0F;
    const auto input = steady(4800, 0.5F);
    EXPECT_EQ(host.render(input, {512}, {{0, {0x90, 60, 127}}}), input);
    EXPECT_LT(host.render(input, {512}, {{0, {0x93, 60, 127}}}).left.back(), 0.1F);
}

TEST_F(NoteInputTest, EventsOutsideTheBlockAreClamped) {
    host.midiIn().clear();
    const std::array<std::uint8_t, 3> on{0x90, 60, 127};
    const std::array<std::uint8_t, 3> off{0x80, 60, 0};
    host.midiIn().append(-5, on.data(), 3);
    host.midiIn().append(100000, off.data(), 3);
    const auto input = steady(64, 0.5F);
    auto output = input;
    host.run(input.left.data(), input.right.data(), output.left.data(), output.right.data(), 64);
    EXPECT_LT(output.left[0], 0.5F);
    EXPECT_LT(output.left[63], output.left[0]);
    const auto after = host.render(steady(192000, 0.5F));
    EXPECT_EQ(after.left.back(), 0.5F);
}

TEST_F(NoteInputTest, EmptyBlockHandlesItsEvents) {
    const std::array<std::uint8_t, 3> on{0x90, 60, 127};
    host.midiIn().append(0, on.data(), 3);
    host.run(nullptr, nullptr, nullptr, nullptr, 0);
    EXPECT_LT(host.render(steady(4800, 0.5F)).left.back(), 0.1F);
}

TEST(NoteInput, CompressesWithoutMidi) {
    EffectHost with;
    EffectHost without({.midi = false});
    ASSERT_TRUE(without.isThere());
    with.activate();
    without.activate();
    const auto input = noiseBursts(48000);
    auto output = input;
    without.run(input.left.data(), input.right.data(), output.left.data(), output.right.data(),
                48000);
    EXPECT_EQ(with.render(input), output);
}

}  // namespace
